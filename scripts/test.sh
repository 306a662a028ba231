#!/usr/bin/env bash
# Builds everything and runs every test. KX_SANITIZE=1 builds with Clang instead of GCC and
# runs them under AddressSanitizer, LeakSanitizer and UBSan (in build-asan/).
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "${KX_SANITIZE:-0}" = "1" ]; then
    # Two compilers in CI: the plain run uses GCC, this one Clang, so code only one of them
    # accepts cannot land.
    export CC=${CC:-clang} CXX=${CXX:-clang++}
    export BUILD_DIR=${BUILD_DIR:-build-asan} KX_BUILD_BENCH=OFF BUILD_TYPE=Debug KX_BUILD_FUZZ=ON
    # A failed allocation returns null, as it does without the sanitizer, so the tests of
    # sizes that cannot be allocated see what the library sees in the field.
    export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1
    export LSAN_OPTIONS=suppressions=$PWD/scripts/lsan.supp:print_suppressions=0
    export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fi
export BUILD_DIR=${BUILD_DIR:-build}
bash scripts/build.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$BUILD_DIR" --output-on-failure
# The fuzz targets, built in the sanitizer tree, each for a short bounded time.
if [ "${KX_SANITIZE:-0}" = "1" ]; then
    bash scripts/fuzz.sh "${KX_FUZZ_SECONDS:-20}"
fi
