#!/bin/sh
# check_run_path.sh PROGRAM
# Every entry of the program's run path must name a folder by an absolute path
# or from $ORIGIN.  An empty or relative entry makes the loader look for every
# library (libc included) in whatever folder the program is started from.
set -u
prog=$1
path=$(readelf -d "$prog" | sed -n 's/.*(\(RUNPATH\|RPATH\)).*\[\(.*\)\]/\2/p')
[ -n "$path" ] || { echo "no run path in $prog"; exit 1; }
status=0
rest=$path:
while [ -n "$rest" ]; do
  entry=${rest%%:*}
  rest=${rest#*:}
  case $entry in
    /*|'$ORIGIN'|'$ORIGIN'/*) ;;
    '') echo "empty entry in the run path \"$path\""; status=1;;
    *) echo "relative entry \"$entry\" in the run path \"$path\""; status=1;;
  esac
done
[ $status = 0 ] && echo "run path \"$path\""
exit $status
