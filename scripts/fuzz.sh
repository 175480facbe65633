#!/usr/bin/env bash
# Fuzzes the whole database path (lexer → parser → emitter → SQLite engine on an in-memory
# shop) with libFuzzer and the address and undefined-behaviour sanitizers.
#   scripts/fuzz.sh [SECONDS] [extra libFuzzer options…]     (default 600 s)
# Needs Debian's clang (packages clang, libclang-rt-14-dev). Builds into build-fuzz/, seeds
# from the statement corpus and the conformance files, keeps what it learns in
# build-fuzz/fuzz-corpus/ and writes crashes to build-fuzz/fuzz-findings/. A crash input
# belongs in tests/db/fuzz/crashes/ (replayed by the tests) and as a conformance case.
# QX_FUZZ_TIMEOUT (seconds, default 3) is the time one input may take under the sanitizers:
# a schema change makes SQLite re-read the shop's schema (hundreds of triggers), which under
# the sanitizers on a busy machine can pass one second.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-600}"
shift || true
command -v clang++ >/dev/null || { echo "fuzz.sh: clang++ is missing (apt-get install clang libclang-rt-14-dev)" >&2; exit 2; }
flags="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g -O1"
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQX_FUZZ=ON \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_SHARED_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build build-fuzz --target qx_tsql_fuzzer -j"$(nproc)"

seeds=build-fuzz/fuzz-seeds
corpus=build-fuzz/fuzz-corpus
findings=build-fuzz/fuzz-findings
rm -rf "$seeds"
mkdir -p "$seeds" "$corpus" "$findings"
# one seed per corpus entry and per conformance record
awk -v dir="$seeds" '/^-- @entry/ { n++; next } /^-- / { next } n { print > (dir "/corpus-" n ".sql") }' tests/db/corpus/statements.sql
for f in tests/db/conformance/*.test; do
    awk -v dir="$seeds" -v base="$(basename "$f" .test)" '
        /^(statement|query)/ { n++; sql = 1; next }
        /^----$/ { sql = 0; next }
        /^$/ { sql = 0; next }
        /^#/ || /^(onlyif|skipif)/ { next }
        sql { print > (dir "/" base "-" n ".sql") }' "$f"
done
cp tests/db/fuzz/crashes/* "$seeds"/ 2>/dev/null || true
rm -f "$seeds/README.md"

export ASAN_OPTIONS="detect_leaks=1:allocator_may_return_null=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
exec build-fuzz/bin/qx_tsql_fuzzer "$corpus" "$seeds" -max_total_time="$seconds" -timeout="${QX_FUZZ_TIMEOUT:-3}" -rss_limit_mb=2048 \
    -max_len=8192 -artifact_prefix="$findings/" -print_final_stats=1 "$@"
