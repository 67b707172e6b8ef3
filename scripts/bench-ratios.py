#!/usr/bin/env python3
"""Runs the benchmarks and prints each of ours against its anchor, as a time ratio."""
import json
import subprocess
import sys
from pathlib import Path

BUILD = Path(sys.argv[1] if len(sys.argv) > 1 else "build/release") / "bench"
# (benchmark binary, our benchmark, its anchor); names with '/' are whole run names, compared
# as they stand (one size of a benchmark against another size of it).
PAIRS = [
    ("bench_utf8", "DecodeUTString", "DecodeQString"),
    ("bench_utf8", "EncodeUTString", "EncodeQString"),
    ("bench_crc64", "Compute", "ByteAtATime"),
    ("bench_batch_message", "ReportFromWorker", "MutexVectorPush"),
    ("bench_listing", "ListFileSpec", "ListReaddir"),
    ("bench_listing", "ListFileSpec", "ListQDirIterator"),
    ("bench_listing", "SetPathUTPath", "CleanPathQDir"),
    ("bench_matrix4", "ProductMatrix4x4", "ProductEigen"),
    ("bench_matrix4", "InverseMatrix4x4", "InverseEigen"),
    ("bench_remap", "RemapUnmatched", "CopyUnmatched"),
    ("bench_remap", "RemapMatched", "CopyMatched"),
    ("bench_remap", "RemapMatched/100", "RemapMatched/1"),
    ("bench_remap", "RemapUnmatched/100", "RemapUnmatched/1"),
    ("bench_locks", "SpinPlumvale", "SpinTbb"),
    ("bench_locks", "NestedAppLock", "NestedRecursiveMutex"),
    ("bench_locks", "NestedAppLock", "FreshRecursiveMutex"),
    ("bench_locks", "PaletteRead", "TbbQueuingRead"),
    ("bench_locks", "NestedPaletteRead", "TbbQueuingRead"),
    ("bench_locks", "QueuingReadPlumvale", "TbbQueuingRead"),
    ("bench_execute", "ExecmTrue", "PosixSpawnTrue"),
    ("bench_execute", "ExecmTrue", "ForkExecTrue"),
    ("bench_execute", "ExecmTrue", "QProcessTrue"),
    ("bench_execute", "ExecmTrue/2048", "ExecmTrue/0"),
    ("bench_files", "CopyTufile", "CopyCp"),
    ("bench_files", "CopyTufile", "CopyCpSynced"),
    ("bench_files", "SignatureFile", "SignatureOpenSsl"),
    ("bench_timers", "PeriodicPLTimer", "PeriodicTimerfd"),
    ("bench_timers", "PeriodicPLTimer", "PeriodicQTimerPrecise"),
]


def medians(binary):
    out = subprocess.run(
        [str(BUILD / binary), "--benchmark_format=json", "--benchmark_repetitions=9",
         "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.2",
         "--benchmark_min_warmup_time=0.1", "--benchmark_enable_random_interleaving=true"],
        check=True, capture_output=True, text=True).stdout
    result = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") == "median":
            result[b["run_name"]] = b["real_time"]
    return result


def main():
    runs = {}
    print(f"{'benchmark':40} {'anchor':32} {'ours':>10} {'anchor':>10} {'ours/anchor':>12}")
    for binary, ours, anchor in PAIRS:
        if binary not in runs:  # each binary runs once, whatever its number of pairs
            runs[binary] = medians(binary)
        times = runs[binary]
        for name, t in sorted(times.items()):
            if "/" in ours:
                if name != ours:
                    continue
                anchor_name = anchor
            elif name != ours and not name.startswith(ours + "/"):
                continue
            else:
                anchor_name = anchor + name[len(ours):]
            other = times.get(anchor_name)
            if other:
                print(f"{name:40} {anchor_name:32} {t:10.1f} {other:10.1f} {t / other:12.3f}")


if __name__ == "__main__":
    main()
