#!/usr/bin/env bash
# LP presolve benchmark: every netlib model solved by kxsolve with the presolve on
# and off, and by Debian's clp with its presolve on, all with the dual simplex.
# Prints per model the wall seconds of the three runs, and at the end the shifted
# geometric means (shift 0.01 s) of the ratios on/clp, off/clp and on/off over the
# models that all three solved, and of on/clp and off/clp over the feasible ones.
#
# Runs under 20 seconds (BENCH_REPEAT_UNDER) are repeated (BENCH_REPEAT times in
# all, default 3) and the best time kept, for every solver alike.
#
# usage: bench/presolve/run.sh [KXSOLVE] [TIMEOUT_S] [NAME_REGEX]
set -u
here=$(cd "$(dirname "$0")" && pwd)
kx=${1:-$here/../../build/release/kxsolve}
tmo=${2:-120}
only=${3:-.}
data=${KORVA_DATA_DIR:-$here/../../../shared/data}/netlib
[ -x "$kx" ] || { echo "kxsolve not found at $kx"; exit 2; }
[ -f "$data/manifest.csv" ] || { echo "netlib data not found under $data"; exit 2; }
command -v clp >/dev/null || { echo "clp not found (Debian: apt-get install coinor-clp)"; exit 2; }
out=$(mktemp); rows=$(mktemp); trap 'rm -f "$out" "$rows"' EXIT
now() { date +%s.%N; }
repeat=${BENCH_REPEAT:-3}
under=${BENCH_REPEAT_UNDER:-20}
run() {  # best wall seconds; the output of the last run stays in $out
  local t0 t1 sec best k
  for ((k = 1; k <= repeat; k++)); do
    t0=$(now); timeout "$tmo" "$@" > "$out" 2>&1; t1=$(now)
    sec=$(awk -v a="$t0" -v b="$t1" 'BEGIN{printf "%.3f", b-a}')
    best=$(awk -v a="${best:-$sec}" -v b="$sec" 'BEGIN{print (b<a)?b:a}')
    awk -v s="$sec" -v u="$under" 'BEGIN{exit !(s>=u)}' && break
  done
  printf '%s' "$best"
}
printf '%-10s %-10s %9s %-10s %9s %9s %9s\n' model on_status on_s off_status off_s clp_s on/off
# The rows also go to a file for the summary (with the model's set), not through
# tee /dev/stderr: with stderr sent to a file, tee would reopen and truncate it.
while IFS=, read -r name set _r _c _n _ref _note; do
  [ "$name" = name ] && continue
  grep -qE "$only" <<<"$name" || continue
  f="$data/$set/$name.mps.gz"
  t_on=$(run "$kx" --method dual --presolve on "$f")
  s_on=$(tail -1 "$out" | sed -n 's/.*status=\([a-z_]*\).*/\1/p'); s_on=${s_on:-timeout}
  t_off=$(run "$kx" --method dual --presolve off "$f")
  s_off=$(tail -1 "$out" | sed -n 's/.*status=\([a-z_]*\).*/\1/p'); s_off=${s_off:-timeout}
  t_clp=$(run clp "$f" -presolve on -dualsimplex)
  grep -qE "Optimal|infeasible|Infeasible" "$out" || t_clp=timeout
  printf '%-10s %-10s %9s %-10s %9s %9s %9s\n' "$name" "$s_on" "$t_on" "$s_off" "$t_off" "$t_clp" \
    "$(awk -v a="$t_on" -v b="$t_off" 'BEGIN{printf "%.2f", (a+0.01)/(b+0.01)}')"
  printf '%s %s %s %s %s %s %s\n' "$name" "$s_on" "$t_on" "$s_off" "$t_off" "$t_clp" "$set" >> "$rows"
done < "$data/manifest.csv"
awk '
  $2 != "timeout" && $4 != "timeout" && $6 != "timeout" {
    r1 = log(($3+0.01)/($6+0.01)); r2 = log(($5+0.01)/($6+0.01))
    n++; a += r1; b += r2; c += log(($3+0.01)/($5+0.01))
    on += $3; off += $5; clp += $6
    if ($7 == "feasible") { nf++; fa += r1; fb += r2 } }
  END { printf "\nmodels %d  total seconds: on %.2f off %.2f clp %.2f\n", n, on, off, clp
        printf "shifted geometric mean of time ratios (shift 0.01 s): on/clp %.3f  off/clp %.3f  on/off %.3f\n",
               exp(a/n), exp(b/n), exp(c/n)
        if (nf) printf "the %d feasible models: on/clp %.3f  off/clp %.3f\n", nf, exp(fa/nf), exp(fb/nf) }' "$rows"
