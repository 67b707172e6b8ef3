#!/usr/bin/env bash
# Builds the release preset and runs the whole test suite (warnings are errors).
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset release
cmake --build --preset release
ctest --preset release
