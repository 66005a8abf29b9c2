#!/bin/sh
# check_library.sh LIBRARY HEADER STATIC_RUNTIME
# The shared library's dynamic interface is exactly the functions the header
# declares with KX_API: none missing (a program would not link), none extra
# (internal or C++ runtime symbols that other code could bind to).  With the
# C++ runtime linked in (STATIC_RUNTIME ON) it must not need libstdc++ or
# libgcc_s either.
set -u
lib=$1 header=$2 static=$3
tmp=${TMPDIR:-/tmp}/check_library.$$
trap 'rm -f "$tmp".*' EXIT
sed -n 's/^KX_API[^(]*[ *]\([A-Za-z_0-9]*\)(.*/\1/p' "$header" | sort -u > "$tmp.declared"
nm -D --defined-only "$lib" | awk '{print $NF}' | sort -u > "$tmp.exported"
[ -s "$tmp.declared" ] || { echo "no KX_API declarations found in $header"; exit 1; }
status=0
missing=$(comm -23 "$tmp.declared" "$tmp.exported")
extra=$(comm -13 "$tmp.declared" "$tmp.exported")
[ -z "$missing" ] || { echo "declared but not exported:"; echo "$missing"; status=1; }
[ -z "$extra" ] || { echo "exported but not declared:"; echo "$extra"; status=1; }
if [ "$static" = ON ]; then
  needed=$(readelf -d "$lib" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
  for n in $needed; do
    case $n in libstdc++*|libgcc_s*) echo "needs $n"; status=1;; esac
  done
fi
[ $status = 0 ] && echo "$(wc -l < "$tmp.declared") functions exported, as declared"
exit $status
