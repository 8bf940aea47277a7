#!/usr/bin/env bash
# Says plainly, after the tests, which tests over real-world files did not run
# and why (a clone without the shared corpus beside it). Silent otherwise.
# Usage: scripts/corpus-note.sh BUILD_DIR
set -euo pipefail
cd "$(dirname "$0")/.."
corpus="${ZEPH_CORPUS_DIR:-$(pwd)/../shared/corpus}"
[ -f "$corpus/MANIFEST.md" ] && exit 0
echo
echo "Not run: the tests over real-world files, because there is no shared corpus"
echo "at $corpus (set ZEPH_CORPUS_DIR to its folder to run them):"
ctest --test-dir "$1" -N -R 'CorpusTest\.' | sed -n 's/^ *Test *#[0-9]*: /  /p'
