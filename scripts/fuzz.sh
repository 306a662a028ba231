#!/usr/bin/env bash
# Runs every libFuzzer target (fuzz/) for SECONDS each (default 60) and exits non-zero on
# any finding.
#   BUILD_DIR=dir        the tree (default build-fuzz); a new one is a Clang ASan+UBSan tree
#                        with only the fuzz targets; an existing one gets KX_BUILD_FUZZ=ON
#   FUZZ_RUNS=N          N executions per target instead of SECONDS
#   FUZZ_TARGETS="a b"   only these targets (names without _fuzz)
#   FUZZ_ARTIFACTS=dir   where crash inputs go (default BUILD_DIR/fuzz-artifacts/<target>/)
#   FUZZ_ASAN=0          a new tree with UBSan alone (no AddressSanitizer, no leak checks):
#                        three to five times faster, for runs of millions of executions
# The seed corpus is copied to a temporary folder first; nothing is written into fuzz/.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$PWD
TIME=${1:-60}
BUILD_DIR=${BUILD_DIR:-build-fuzz}
ALL="formatfloat strtonum format numedit trendfile inifile canvasscript kxlabel bindings"
TARGETS=${FUZZ_TARGETS:-$ALL}
ARTIFACTS=${FUZZ_ARTIFACTS:-$BUILD_DIR/fuzz-artifacts}

# Inputs longer than this only cost time: each target reads at most about this much.
max_len() {
    case $1 in
        formatfloat | strtonum | numedit) echo 256 ;;
        format | kxlabel) echo 1024 ;;
        trendfile) echo 4825 ;;
        *) echo 4096 ;;
    esac
}

if [ ! -f "$BUILD_DIR/CMakeCache.txt" ]; then
    bash scripts/deps.sh
    launcher=()
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    sanitizers=address,undefined
    [ "${FUZZ_ASAN:-1}" = "0" ] && sanitizers=undefined
    cmake -S . -B "$BUILD_DIR" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
          -DKX_SANITIZE=ON -DKX_SANITIZERS=$sanitizers -DKX_BUILD_FUZZ=ON -DKX_BUILD_TESTS=OFF -DKX_BUILD_APPS=ON \
          -DKX_BUILD_BENCH=OFF -DKX_BUILD_DESIGNER=OFF "${launcher[@]}" >/dev/null
elif ! grep -q '^KX_BUILD_FUZZ:BOOL=ON' "$BUILD_DIR/CMakeCache.txt"; then
    cmake -B "$BUILD_DIR" -DKX_BUILD_FUZZ=ON >/dev/null
fi
build_targets=()
for t in $TARGETS; do build_targets+=("${t}_fuzz"); done
cmake --build "$BUILD_DIR" -j"${FUZZ_JOBS:-$(nproc)}" --target "${build_targets[@]}"

export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$ROOT/scripts/lsan.supp}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [ -n "${FUZZ_RUNS:-}" ]; then limit=(-runs="$FUZZ_RUNS"); else limit=(-max_total_time="$TIME"); fi

failed=0
summary=()
for t in $TARGETS; do
    corpus=$work/$t
    mkdir -p "$corpus" "$ARTIFACTS/$t"
    cp "$ROOT/fuzz/corpus/$t/"* "$corpus/"
    find "$ROOT/fuzz/regressions/$t" -type f ! -name .gitkeep -exec cp {} "$corpus/" \;
    log=$work/$t.log
    rc=0
    "$BUILD_DIR/fuzz/${t}_fuzz" "${limit[@]}" -max_len="$(max_len "$t")" -timeout=25 \
        -rss_limit_mb=2048 -detect_leaks=1 -print_final_stats=1 \
        -dict="$ROOT/fuzz/dict/$t.dict" -artifact_prefix="$ARTIFACTS/$t/" "$corpus" \
        >"$log" 2>&1 || rc=$?
    execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
    result=ok
    if [ $rc -ne 0 ]; then
        failed=1
        crash=$(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log" | tail -1)
        result="FAILED (exit $rc) input: ${crash:-none written}"
        tail -n 60 "$log" >&2
        cp "$log" "$ARTIFACTS/$t/last.log"
    fi
    line=$(printf '%-13s execs %10s  exec/s %7s  %s' "$t" "${execs:-?}" "${rate:-?}" "$result")
    echo "$line"
    summary+=("$line")
done
echo "---- fuzz summary ----"
printf '%s\n' "${summary[@]}"
exit $failed
