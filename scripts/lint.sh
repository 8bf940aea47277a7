#!/usr/bin/env bash
# clang-tidy with the checks of .clang-tidy over the libraries, apps and tools
# (the tests are left to the compiler's warnings). Needs a configured build
# for its compile commands. Usage: scripts/lint.sh [BUILD_DIR] [FILE_REGEX]
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir="${1:-build/dev}"
files="${2:-^$(pwd)/(platform|src|apps|tools)/.*\.cpp$}"
command -v run-clang-tidy >/dev/null || { echo "clang-tidy is not installed (make deps installs it)" >&2; exit 1; }
# The dev build's compile commands carry GCC-only warning flags.
run-clang-tidy -quiet -p "$build_dir" -j "$(nproc)" \
  -extra-arg=-Wno-unknown-warning-option -extra-arg=-fsized-deallocation "$files"
