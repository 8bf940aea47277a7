#!/usr/bin/env bash
# Fails, listing the files, when any C++ file of the repository differs from
# what clang-format makes of it. Run scripts/check-format.sh --fix to apply.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v clang-format >/dev/null || { echo "clang-format is not installed (make deps installs it)" >&2; exit 1; }

mapfile -t files < <(git ls-files '*.cpp' '*.h' 2>/dev/null || find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print)

if [ "${1:-}" = "--fix" ]; then
  clang-format -i "${files[@]}"
  exit 0
fi

# One run over all files; each difference is reported as "file:line:col: error".
mapfile -t unformatted < <(clang-format --dry-run --Werror "${files[@]}" 2>&1 |
  sed -n 's/^\([^:]*\):[0-9]*:[0-9]*: error:.*/\1/p' | sort -u)

if [ ${#unformatted[@]} -gt 0 ]; then
  echo "Not formatted (run scripts/check-format.sh --fix):"
  printf '  %s\n' "${unformatted[@]}"
  exit 1
fi
echo "${#files[@]} files formatted"
