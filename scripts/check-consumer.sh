#!/usr/bin/env bash
# Installs the release build into a scratch prefix, runs the installed pvtool from there
# (no library path given), and builds two consumers against it: a CMake project using
# find_package, and a plain compile through pkg-config. Then does the same for a static
# build of the library (BUILD_SHARED_LIBS=OFF), with the CMake consumer.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$(mktemp -d)
static_prefix=$(mktemp -d)
work=$(mktemp -d)
trap 'rm -rf "$prefix" "$static_prefix" "$work"' EXIT

cmake --install build/release --prefix "$prefix" > /dev/null
installed=$(env -u LD_LIBRARY_PATH "$prefix/bin/pvtool" --version)
[[ $installed == "pvtool (PlumvaleBaseCore) "* ]] || { echo "installed pvtool: $installed"; exit 1; }

cmake -S tests/consumer -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" > /dev/null
cmake --build "$work/cmake" > /dev/null
LD_LIBRARY_PATH="$prefix/lib" "$work/cmake/consumer" | tee "$work/cmake.out"
grep -qx 'crc64 46a5a9388a5beffe' "$work/cmake.out"
grep -qx 'french Aucun fichier indiqué.' "$work/cmake.out"

export PKG_CONFIG_PATH="$prefix/lib/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}"
# shellcheck disable=SC2046
c++ -std=c++17 -fPIC tests/consumer/main.cpp -o "$work/pkgconfig-consumer" \
    $(pkg-config --cflags --libs PlumvaleBaseCore)
LD_LIBRARY_PATH="$prefix/lib" "$work/pkgconfig-consumer" | grep -qx 'crc64 46a5a9388a5beffe'
# The static library: its catalogue, its tool and a consumer must behave as the shared ones.
cmake -S . -B build/static -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
    -DPLUMVALE_BUILD_TESTS=OFF -DPLUMVALE_BUILD_BENCHMARKS=OFF -DPLUMVALE_WERROR=ON > /dev/null
cmake --build build/static > /dev/null
cmake --install build/static --prefix "$static_prefix" > /dev/null
set +e
french=$("$static_prefix/bin/pvtool" -nologo -lang fr crc64 "$work/missing.bin" 2>&1)
status=$?
set -e
[[ $status == 1 && $french == "pvtool: Impossible de lire "* ]] ||
    { echo "static pvtool -lang fr: exit $status, '$french'"; exit 1; }
cmake -S tests/consumer -B "$work/static" -G Ninja -DCMAKE_PREFIX_PATH="$static_prefix" > /dev/null
cmake --build "$work/static" > /dev/null
"$work/static/consumer" | tee "$work/static.out"
grep -qx 'crc64 46a5a9388a5beffe' "$work/static.out"
grep -qx 'french Aucun fichier indiqué.' "$work/static.out"
echo "consumer check: 5 passed, 0 failed"
