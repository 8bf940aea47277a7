#!/usr/bin/env bash
# Rebuilds the sample media files in samples/ from the generator's content.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset dev >/dev/null
cmake --build --preset dev --target make_samples
build/dev/samples/make_samples samples
