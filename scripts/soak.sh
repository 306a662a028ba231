#!/usr/bin/env bash
# Builds kxsoak in release mode and soaks every component: READINGS readings each
# (default 10000: 10^6 per component would take hours, the typed entries and
# 10 000-character texts of the numeric edits and labels cost milliseconds a reading;
# the growth is scaled per 10^6 readings either way, so short runs are noisier). Prints the
# per-component table and fails when any component grows by 1 MiB or more per 10^6
# readings. Extra arguments go to kxsoak (e.g. --component TKxBar).
set -euo pipefail
cd "$(dirname "$0")/.."
export BUILD_DIR=${BUILD_DIR:-build-release} BUILD_TYPE=Release
bash scripts/build.sh --target kxsoak
QT_QPA_PLATFORM=offscreen "$BUILD_DIR/apps/kxsoak/kxsoak" --readings "${READINGS:-10000}" \
    --report --max-growth-kib 1024 "$@"
