#!/usr/bin/env bash
# Installs a build into a fresh prefix and uses it as a host would: CMake's
# find_package and pkg-config each build the README's embedding example,
# which must then show a sample file's metadata, and small uses of the
# timed-metadata and layout-script libraries.
# Usage: scripts/check-package.sh BUILD_DIR
set -euo pipefail
source_dir="$(cd "$(dirname "$0")/.." && pwd)"
build_dir="$(cd "$1" && pwd)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
example="$source_dir/apps/embed-example/main.cpp"
sample="$source_dir/samples/harbour-first-light.jpg"
export QT_QPA_PLATFORM=offscreen

cmake --install "$build_dir" --prefix "$prefix" >/dev/null

echo "== find_package(zephmetadataui)"
cmake -S "$source_dir/tests/package" -B "$work/host" -G Ninja \
  -DCMAKE_PREFIX_PATH="$prefix" -DEMBED_EXAMPLE_SOURCE="$example" >/dev/null
cmake --build "$work/host" >/dev/null
"$work/host/embed-example" "$sample" --check
"$work/host/temporal-check"
"$work/host/eve-check"

echo "== pkg-config zephmetadataui"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
pc_prefix="$(pkg-config --variable=prefix zephmetadataui)"
[ "$(cd "$pc_prefix" && pwd)" = "$(cd "$prefix" && pwd)" ] ||
  { echo "pkg-config names prefix $pc_prefix, not the one installed to ($prefix)" >&2; exit 1; }
# shellcheck disable=SC2046
g++ -std=c++17 -fPIC "$example" -o "$work/embed-example-pc" $(pkg-config --cflags --libs zephmetadataui)
"$work/embed-example-pc" "$sample" --check
# shellcheck disable=SC2046
g++ -std=c++17 -fPIC "$source_dir/tests/package/TemporalCheck.cpp" -o "$work/temporal-check-pc" \
  $(pkg-config --cflags --libs zephmetadataui)
"$work/temporal-check-pc"
# shellcheck disable=SC2046
g++ -std=c++17 -fPIC "$source_dir/tests/package/EveCheck.cpp" -o "$work/eve-check-pc" \
  $(pkg-config --cflags --libs zephmetadataui)
"$work/eve-check-pc"
