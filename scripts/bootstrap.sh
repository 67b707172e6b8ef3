#!/usr/bin/env bash
# Installs what the project needs, builds the release preset and runs pvtool on a small demo.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset release
cmake --build --preset release

pvtool=build/release/tools/pvtool
demo=$(mktemp -d)
trap 'rm -rf "$demo"' EXIT
printf '123456789' > "$demo/check.txt"
printf 'Plumvale demo scene\n' > "$demo/scene.txt"

echo "== pvtool --version"
"$pvtool" --version
echo "== pvtool crc64 (the first line is the CRC-64 check value 46a5a9388a5beffe)"
"$pvtool" crc64 "$demo/check.txt" "$demo/scene.txt"
echo "== pvtool timecode 86400 24, then 25 24 --hours"
"$pvtool" timecode 86400 24
"$pvtool" timecode 25 24 --hours
