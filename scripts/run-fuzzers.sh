#!/bin/sh
# Runs every fuzz target under a build folder for N seconds each, one after
# another, on a copy of its seed corpus (new inputs stay out of the tree).
# Usage: scripts/run-fuzzers.sh build/fuzz/fuzz 60
set -eu
folder=${1:-build/fuzz/fuzz}
seconds=${2:-60}
here=$(cd "$(dirname "$0")/.." && pwd)
status=0
for program in $(find "$folder" -maxdepth 1 -type f -name 'fuzz_*' -perm -u+x | sort); do
  name=${program##*/fuzz_}
  work="$folder/corpus-$name"
  mkdir -p "$work"
  cp -n "$here/fuzz/corpus/$name"/* "$work"/ 2>/dev/null || true
  echo "== fuzz_$name for $seconds s"
  log="$folder/fuzz_$name.log"
  if ! nice -n 19 "$program" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
      -print_final_stats=1 "$work" >"$log" 2>&1; then
    status=1
    echo "   FAILED: see $log"
  fi
  # The last status line (executions, cov, ft) and the total executed.
  grep -E '^#[0-9]+' "$log" | tail -1
  grep -E '^stat::number_of_executed_units' "$log" || true
done
exit $status
