#!/usr/bin/env bash
# Installs the release build into a scratch prefix, runs the installed pvtool from there
# (no library path given), and builds two consumers against it: a CMake project using
# find_package, and a plain compile through pkg-config.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$(mktemp -d)
work=$(mktemp -d)
trap 'rm -rf "$prefix" "$work"' EXIT

cmake --install build/release --prefix "$prefix" > /dev/null
installed=$(env -u LD_LIBRARY_PATH "$prefix/bin/pvtool" --version)
[[ $installed == "pvtool (PlumvaleBaseCore) "* ]] || { echo "installed pvtool: $installed"; exit 1; }

cmake -S tests/consumer -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" > /dev/null
cmake --build "$work/cmake" > /dev/null
LD_LIBRARY_PATH="$prefix/lib" "$work/cmake/consumer" | tee "$work/cmake.out"
grep -qx 'crc64 46a5a9388a5beffe' "$work/cmake.out"

export PKG_CONFIG_PATH="$prefix/lib/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}"
# shellcheck disable=SC2046
c++ -std=c++17 -fPIC tests/consumer/main.cpp -o "$work/pkgconfig-consumer" \
    $(pkg-config --cflags --libs PlumvaleBaseCore)
LD_LIBRARY_PATH="$prefix/lib" "$work/pkgconfig-consumer" | grep -qx 'crc64 46a5a9388a5beffe'
echo "consumer check: 3 passed, 0 failed"
