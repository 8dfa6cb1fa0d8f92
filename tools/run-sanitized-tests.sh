#!/usr/bin/env bash
# The whole test suite built with gcc's AddressSanitizer and UndefinedBehaviorSanitizer in
# ./build-asan (or $ASAN_BUILD_DIR): any memory error, leak or undefined behaviour fails its test.
# The fuzz corpora are replayed there as tests; the benchmarks are not built.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${ASAN_BUILD_DIR:-$root/build-asan}
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=g++ \
  -DGRAPHICSOBJECTS_SANITIZE=ON -DGRAPHICSOBJECTS_BUILD_BENCH=OFF "${launcher[@]}" >/dev/null
cmake --build "$build" --parallel "$(nproc)"
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=1:check_initialization_order=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# Qt's and fontconfig's own allocations that live until exit.
export LSAN_OPTIONS=suppressions=$root/tools/lsan.supp:print_suppressions=0
cd "$build"
ctest --output-on-failure --parallel "$(nproc)" --timeout 900
