#!/usr/bin/env bash
# Builds in release mode and runs every benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
export BUILD_DIR=${BUILD_DIR:-build-release} BUILD_TYPE=Release
bash scripts/build.sh --target kxbench
QT_QPA_PLATFORM=offscreen "$BUILD_DIR/bench/kxbench" "$@"
