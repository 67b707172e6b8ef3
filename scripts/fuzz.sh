#!/usr/bin/env bash
# Builds the fuzz preset and runs one fuzz target for a number of seconds:
#   scripts/fuzz.sh TARGET SECONDS   (TARGET: utf8, codepage, format, paths, shell_link, remap,
#                                    lex)
# The run starts from the target's corpus in fuzz/corpus/TARGET and keeps what it finds in
# build/fuzz/corpus/TARGET; a failing input is written to build/fuzz/artifacts/. To keep
# one as a regression, copy it into fuzz/corpus/TARGET: ctest replays that folder. To run
# several targets side by side, build them first (cmake --build --preset fuzz).
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -ne 2 ]; then
    echo "usage: $0 TARGET SECONDS" >&2
    exit 2
fi
target=$1
seconds=$2
[ -d "fuzz/corpus/$target" ] || { echo "$0: no fuzz target '$target'" >&2; exit 2; }

# Configured once; two runs at a time must not configure the same folder together.
[ -f build/fuzz/build.ninja ] || cmake --preset fuzz > /dev/null
cmake --build --preset fuzz --target "fuzz_$target"
work="build/fuzz/corpus/$target"
artifacts="build/fuzz/artifacts/"
mkdir -p "$work" "$artifacts"
exec "build/fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -rss_limit_mb=2048 \
    -timeout=10 -print_final_stats=1 -artifact_prefix="$artifacts" "$work" "fuzz/corpus/$target"
