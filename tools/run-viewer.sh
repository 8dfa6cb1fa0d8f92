#!/usr/bin/env bash
# The viewer on the bundled sample: installs what is missing, builds the viewer, starts it.
# Arguments are passed on (another image or scene document instead of the sample).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
"$root/tools/deps.sh"
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target goviewer
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "No display: run it from a desktop session, or under Xvfb with tools/screenshot-viewer.sh" >&2
  exit 1
fi
exec "$build/apps/viewer/goviewer" "${@:-$root/samples/hardness-test.xml}"
