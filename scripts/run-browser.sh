#!/usr/bin/env bash
# Starts the metadata browser on the bundled samples. Without a display it
# renders the window and its panels to PNG files instead and says where.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/dev}
app="$build/apps/metadata-browser/metadata-browser"
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  exec "$app" samples
fi
out="$build/screenshots"
echo "No display found: rendering the browser to PNG instead."
QT_QPA_PLATFORM=offscreen "$app" --screenshot "$out" samples
echo "Open $out/browser.png to see the window."
