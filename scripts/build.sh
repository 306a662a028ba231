#!/usr/bin/env bash
# Configures and builds into BUILD_DIR (default build/). KX_SANITIZE=1 builds with ASan+UBSan,
# KX_BUILD_FUZZ=ON adds the fuzz targets (Clang only).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
BUILD_DIR=${BUILD_DIR:-build}
SAN=OFF
[ "${KX_SANITIZE:-0}" = "1" ] && SAN=ON
BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo}
cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE="$BUILD_TYPE" -DKX_SANITIZE="$SAN" \
      -DKX_BUILD_BENCH="${KX_BUILD_BENCH:-ON}" -DKX_BUILD_FUZZ="${KX_BUILD_FUZZ:-OFF}" >/dev/null
cmake --build "$BUILD_DIR" -j"$(nproc)" "$@"
