#!/bin/bash
# Fuzzes the Deflate decoder: fuzz/run.sh SECONDS [BUILD_DIRECTORY]. Builds with Clang, libFuzzer and the address and
# undefined behaviour sanitizers, writes the seeds, runs, and prints executions and coverage. New inputs stay in the build
# directory's corpus for the next run; an input that fails is left there as crash-*.
set -euo pipefail
seconds=${1:?usage: fuzz/run.sh SECONDS [BUILD_DIRECTORY]}
cd "$(dirname "$0")/.."
build=$(realpath -m "${2:-build-fuzz}")
cmake --preset fuzz -B "$build" ${ZEP_CMAKE_ARGS:-} > /dev/null
cmake --build "$build" --target inflate_fuzz inflate_corpus -j "${ZEP_JOBS:-2}" > "$build/build.log" || { tail -40 "$build/build.log"; exit 1; }
mkdir -p "$build/found"
"$build/fuzz/inflate_corpus" "$build/seeds"
cd "$build"
status=0
fuzz/inflate_fuzz -max_total_time="$seconds" -max_len=4096 -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 \
    found seeds 2> fuzz.log || status=$?
grep -E 'SUMMARY|ERROR|disagree|no progress|zlib' fuzz.log | head -5 || true
grep -E 'stat::number_of_executed_units|stat::average_exec_per_sec|stat::new_units_added' fuzz.log || true
grep -E '^#[0-9]+.*cov:' fuzz.log | tail -1
[ $status -eq 0 ] || { echo "failed; the input is $(ls -t "$build"/crash-* "$build"/timeout-* "$build"/leak-* 2>/dev/null | head -1)"; tail -30 fuzz.log; }
exit $status
