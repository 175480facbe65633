#!/usr/bin/env bash
# Runs the benchmarks of a build and prints the figures:
#   bench/run.sh BUILD_DIR
# The bridge benchmark needs the demo shop at scale 10; it is made once (qxck-demo) and kept
# in $QXCK_BENCH_DB (default: the temp folder). The stock reports are measured on a shop of
# $QXCK_BENCH_LINES document lines (default 1000000; 10000000 for the large figures), made once
# by qxck-demo --lines and kept in the temp folder.
set -euo pipefail

build="${1:?usage: bench/run.sh BUILD_DIR}"
bin="$build/bin"
db="${QXCK_BENCH_DB:-${TMPDIR:-/tmp}/qxck-bench-scale10.db}"
export QXCK_BENCH_DB="$db"

if [ ! -f "$db" ]; then
    echo "bench: creating the scale-10 demo shop in $db"
    "$bin/qxck-demo" --db "$db" --scale 10 --seed 1 --end 2026-06-30
fi

out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT

run() {  # run BENCHMARK NAME MIN_TIME: JSON into $out/NAME.json, console output only on failure
    "$bin/$1" --benchmark_min_time="$3" --benchmark_out="$out/$2.json" --benchmark_out_format=json >"$out/$2.log" 2>&1 ||
        { cat "$out/$2.log" >&2; exit 1; }
}
run bench_translate translate 0.2
run bench_bridge bridge 1
run bench_document_save save 2

python3 - "$out/translate.json" "$out/bridge.json" "$out/save.json" <<'PY'
import json, sys

def load(path):
    return {b["name"]: b for b in json.load(open(path))["benchmarks"]}

def us(b):
    scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}[b["time_unit"]]
    return b["cpu_time"] * scale

translate, bridge, save = load(sys.argv[1]), load(sys.argv[2]), load(sys.argv[3])
print("Translation per statement (CPU µs):")
for name, b in sorted(translate.items()):
    if name.startswith("translate/"):
        print(f"  {name[len('translate/'):]:<28} {us(b):8.1f}")
corpus = bridge.get("translate/corpus")
if corpus:
    print(f"  {'whole corpus, per statement':<28} {corpus['per_statement'] * 1e6:8.1f}   ({int(corpus['statements'])} statements)")
print("Bridged (T-SQL through the translator) vs hand-written SQLite, scale-10 demo shop (CPU ms):")
for name, b in sorted(bridge.items()):
    if name.startswith("bridged/"):
        report = name[len("bridged/"):]
        n = bridge["native/" + report]
        print(f"  {report:<20} bridged {us(b)/1e3:8.2f}   hand-written {us(n)/1e3:8.2f}   ratio {us(b)/us(n):5.2f}   rows {int(b['rows'])}")
screen, bare = save["SaveThroughTheEntryScreen/real_time"], save["BareInserts/real_time"]
def ms(b):
    return b["real_time"] * {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[b["time_unit"]]
print("Saving a 500-line purchase receipt (wall ms):")
print(f"  through the entry screen {ms(screen):8.1f}   bare inserts {ms(bare):8.1f}   ratio {ms(screen)/ms(bare):5.2f}")
PY

# Scanning into a count sheet: wall time per scanned barcode over 500 scans.
"$bin/bench_scan" --benchmark_out="$out/scan.json" --benchmark_out_format=json >"$out/scan.log" 2>&1 ||
    { cat "$out/scan.log" >&2; exit 1; }
python3 - "$out/scan.json" <<'PY'
import json, sys
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    print(f"Scanning into a count sheet: {b['real_time']:.2f} {b['time_unit']} per scan (wall), {int(b['lines'])} lines")
PY

# The business reports beside their hand-written queries: the scale-10 shop, or the large shop
# named by $QXCK_REPORT_DB (made by qxck-demo --lines N, opened read-only).
run bench_report report 0.1
python3 - "$out/report.json" <<'PY'
import json, sys
rows = {b["name"]: b for b in json.load(open(sys.argv[1]))["benchmarks"]}
print("Business reports beside their hand-written queries (CPU ms):")
for name, b in rows.items():
    if name.startswith("report/"):
        case = name[len("report/"):]
        h = rows["hand/" + case]
        ms = lambda x: x["cpu_time"] * {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[x["time_unit"]]
        print(f"  {case.replace('/real_time', ''):<72} report {ms(b):8.1f}   hand-written {ms(h):8.1f}   ratio {ms(b)/ms(h):5.2f}")
PY

echo "Stock reports beside their floors (bench_stock, wall-clock ms, median of 3):"
"$bin/bench_stock" --lines "${QXCK_BENCH_LINES:-1000000}"

# Four terminals saving receipts and sales of the same SKUs on one PostgreSQL shop (a private
# server started for the run) for $QXCK_RACE_SECONDS seconds (default 60).
# Then the reports' statements through the translator beside hand-written PostgreSQL, on the
# 1 M-line shop (the one bench_stock made above) copied to a private server.
if ls /usr/lib/postgresql/*/bin/initdb >/dev/null 2>&1 || [ -n "${QXCK_PG_BIN:-}" ]; then
    "$bin/bench_terminal_race" --seconds "${QXCK_RACE_SECONDS:-60}"
    "$bin/bench_pg_report" --from "${TMPDIR:-/tmp}/qxck-bench-lines${QXCK_BENCH_LINES:-1000000}.db"
fi
