#!/bin/sh
# Runs every benchmark program under a build folder and prints its figures
# beside their budgets. Usage: scripts/run-benchmarks.sh build/release/bench
# Extra arguments go to every program (for instance --benchmark_filter=Parse).
set -eu
folder=${1:-build/release/bench}
shift || true
if [ ! -d "$folder" ]; then
  echo "no such folder: $folder (build with -DZEPH_BUILD_BENCHMARKS=ON)" >&2
  exit 2
fi
found=0
status=0
for program in $(find "$folder" -type f \( -name 'bench_*' -o -name '*_bench' \) -perm -u+x | sort); do
  found=1
  echo "== $program"
  "$program" --benchmark_color=false "$@" || status=1
  echo
done
if [ "$found" -eq 0 ]; then
  echo "no bench_* or *_bench programs under $folder" >&2
  exit 2
fi
exit $status
