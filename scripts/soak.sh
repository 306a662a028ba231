#!/usr/bin/env bash
# Builds kxsoak in release mode and soaks every component: READINGS readings each (default
# 10^6) with one property change every CHURN readings (default 1000), prints the
# per-component table and fails when the heap of any component grows by 1 MiB or more per 10^6
# readings. Extra arguments go to kxsoak (e.g. --component TKxBar).
set -euo pipefail
cd "$(dirname "$0")/.."
export BUILD_DIR=${BUILD_DIR:-build-release} BUILD_TYPE=Release
bash scripts/build.sh --target kxsoak
QT_QPA_PLATFORM=offscreen "$BUILD_DIR/apps/kxsoak/kxsoak" --readings "${READINGS:-1000000}" \
    --churn-every "${CHURN:-1000}" --report --max-growth-kib 1024 "$@"
