#!/usr/bin/env bash
# The main job: installs what is missing, builds the gallery program and renders its pages
# as PNG files into out/ (or OUTDIR given as the first argument). While the widget
# gallery (apps/gallery) is not in the tree, the drawing-toolkit showcase stands in.
set -euo pipefail
cd "$(dirname "$0")/.."
export BUILD_DIR=${BUILD_DIR:-build}
OUT=${1:-out}
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
if [ -f apps/gallery/CMakeLists.txt ]; then
    bash scripts/build.sh --target kxgallery
    "$BUILD_DIR/apps/gallery/kxgallery" --screenshot "$OUT"
else
    bash scripts/build.sh --target kxshowcase
    "$BUILD_DIR/apps/showcase/kxshowcase" "$OUT"
fi
