#!/usr/bin/env bash
# Installs the build and run-time dependencies when any is missing (Debian 12, as root or via sudo).
# Clang and its runtimes build the sanitizer run (ASan, UBSan, LeakSanitizer) and the fuzz
# targets; llvm brings llvm-symbolizer for readable sanitizer reports. Qt SerialBus, libmosquitto
# and the mosquitto broker serve the live-panel runner's Modbus TCP and MQTT sources and tests.
set -euo pipefail
pkgs=(build-essential cmake qt6-base-dev qt6-tools-dev libqt6opengl6-dev libgl-dev fonts-liberation2
      libgtest-dev libgmock-dev libbenchmark-dev
      clang libclang-rt-14-dev llvm
      qt6-serialbus-dev libmosquitto-dev mosquitto pkg-config)
missing=()
for p in "${pkgs[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    SUDO=""
    [ "$(id -u)" -ne 0 ] && SUDO="sudo"
    $SUDO apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
