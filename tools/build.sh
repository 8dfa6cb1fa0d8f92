#!/usr/bin/env bash
# Configures and builds out of source in ./build (or $BUILD_DIR), through ccache when it is there.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build}
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
cmake --build "$build" --parallel "$(nproc)"
