#!/usr/bin/env bash
# Installs every Debian 12 package the library, its tests and benchmarks need; safe to run again.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config clang libclang-rt-14-dev clang-format python3
  qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev libxkbcommon-dev
  qtbase5-dev qttools5-dev qttools5-dev-tools
  libtbb-dev libgtest-dev libgmock-dev libbenchmark-dev libeigen3-dev libssl-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ "${#missing[@]}" -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
