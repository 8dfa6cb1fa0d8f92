#!/usr/bin/env bash
# The whole test suite: installs what is missing, builds, runs every test; then (unless SANITIZE=0)
# builds again in build-asan with AddressSanitizer and UndefinedBehaviorSanitizer and runs every test
# there too.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/tools/deps.sh"
"$root/tools/build.sh"
export QT_QPA_PLATFORM=offscreen
(cd "${BUILD_DIR:-$root/build}" && ctest --output-on-failure --parallel "$(nproc)" --timeout 600)
if [ "${SANITIZE:-1}" != 0 ]; then
  "$root/tools/run-sanitized-tests.sh"
fi
