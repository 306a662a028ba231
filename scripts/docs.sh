#!/usr/bin/env bash
# Generates the HTML API reference from the public headers' comments with Doxygen
# (installed when missing) into build-docs/html; prints the path of the index page.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v doxygen >/dev/null; then
    SUDO=""
    [ "$(id -u)" -ne 0 ] && SUDO="sudo"
    $SUDO apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends doxygen
fi
OUT=${1:-build-docs}
mkdir -p "$OUT"
version=$(sed -n 's/^project(KxInstruments VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
( cat docs/Doxyfile
  echo "PROJECT_NUMBER = $version"
  echo "OUTPUT_DIRECTORY = $OUT" ) | doxygen - >"$OUT/doxygen.log" 2>&1
echo "$OUT/html/index.html"
