#!/usr/bin/env bash
# The README's picture of the viewer: the bundled sample in the viewer under Xvfb, written to
# docs/viewer.png (or the file given). Installs xvfb when it is missing; the tests never need it.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
out=${1:-$root/docs/viewer.png}
"$root/tools/deps.sh" xvfb xauth
cmake --build "$build" --parallel "$(nproc)" --target goviewer
LANG=C.UTF-8 xvfb-run -a -s "-screen 0 1280x800x24" \
  "$build/apps/viewer/goviewer" "$root/samples/hardness-test.xml" --screenshot "$out"
echo "wrote $out"
