#!/usr/bin/env bash
# The main job: installs what is missing, builds, and runs the command-line tool on the bundled sample.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/tools/deps.sh"
"$root/tools/build.sh"
export QT_QPA_PLATFORM=offscreen
"${BUILD_DIR:-$root/build}/apps/gotool/gotool" catalogue
