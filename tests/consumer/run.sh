#!/usr/bin/env bash
# Installs the built library into a temporary prefix, then configures, builds and runs
# the consumer project against it. Arguments: BUILD_DIR SOURCE_DIR [extra CXX flags].
set -euo pipefail
build=$1 src=$2 flags=${3:-}
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
# The consumer builds with the library's compiler: sanitizer runtimes differ between them.
cxx=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$build/CMakeCache.txt")
cmake -S "$src/tests/consumer" -B "$tmp/build" -DCMAKE_PREFIX_PATH="$tmp/prefix" \
      ${cxx:+-DCMAKE_CXX_COMPILER="$cxx"} \
      -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
cmake --build "$tmp/build" -j2 >/dev/null
QT_QPA_PLATFORM=offscreen "$tmp/build/consumer"
