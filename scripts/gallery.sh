#!/usr/bin/env bash
# The main job: installs what is missing, builds the gallery program and renders its pages
# as PNG files into out/ (or OUTDIR given as the first argument), with the example live panel
# rendered beside them; with a display and no argument it opens the gallery window instead.
set -euo pipefail
cd "$(dirname "$0")/.."
export BUILD_DIR=${BUILD_DIR:-build}
OUT=${1:-out}
if [ -f apps/gallery/CMakeLists.txt ]; then
    bash scripts/build.sh --target kxgallery
    # With a display (and no output folder asked for) the gallery opens its window.
    if [ $# -eq 0 ] && [ -z "${CI:-}" ] && { [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; }; then
        exec "$BUILD_DIR/apps/gallery/kxgallery"
    fi
    export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
    "$BUILD_DIR/apps/gallery/kxgallery" --screenshot "$OUT"
    # The example live panel, fed by the simulator for two seconds.
    if [ -f apps/kxpanel/CMakeLists.txt ]; then
        bash scripts/build.sh --target kxpanel
        "$BUILD_DIR/apps/kxpanel/kxpanel" examples/panels/boiler-house.ui \
            --bind examples/panels/boiler-house.sim.json --render "$OUT/boiler-house.png" --after 2
    fi
else
    export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
    bash scripts/build.sh --target kxshowcase
    "$BUILD_DIR/apps/showcase/kxshowcase" "$OUT"
fi
