#!/usr/bin/env bash
# The main job: installs what is missing, builds, then lists the tools and measures and exports the
# bundled sample scene (a Vickers indentation with a few measures) to build/sample.dxf and .png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
"$root/tools/deps.sh"
"$root/tools/build.sh"
export QT_QPA_PLATFORM=offscreen
gotool="$build/apps/gotool/gotool"
sample="$root/samples/hardness-test.xml"
"$gotool" catalogue
echo
"$gotool" measure "$sample"
echo
"$gotool" export "$sample" "$build/sample.dxf" --force
"$gotool" export "$sample" "$build/sample.png" --force
