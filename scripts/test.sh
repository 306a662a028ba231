#!/usr/bin/env bash
# Builds everything and runs every test. KX_SANITIZE=1 runs them under ASan+UBSan (in build-asan/).
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "${KX_SANITIZE:-0}" = "1" ]; then
    export BUILD_DIR=${BUILD_DIR:-build-asan} KX_BUILD_BENCH=OFF BUILD_TYPE=Debug
    export ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fi
export BUILD_DIR=${BUILD_DIR:-build}
bash scripts/build.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$BUILD_DIR" --output-on-failure
