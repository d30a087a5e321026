#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz and runs each for a bounded time on a
# temporary copy of its seeds and regressions. Any input slower than one second counts as a
# hang. Prints a table per target and fails on any crash, hang or sanitizer report; the inputs
# that failed are kept under build-fuzz/fuzz/failures/<target>/.
#   fuzz/run.sh [target...]            every target when none is named
#   GR_FUZZ_SECONDS=60 fuzz/run.sh     seconds per target (default 25)
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/bootstrap.sh
gr_install_missing clang libclang-rt-14-dev

seconds=${GR_FUZZ_SECONDS:-25}
dir=build-fuzz
# Configured every time: that writes the fuzz_<name>.seeds files naming the targets.
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
    -DGR_BUILD_FUZZ=ON -DGR_BUILD_TESTS=OFF -DGR_BUILD_BENCH=OFF >/dev/null

targets=()
if [ $# -gt 0 ]; then
    for name in "$@"; do targets+=("fuzz_${name#fuzz_}"); done
else
    for seeds in "$dir"/fuzz/fuzz_*.seeds; do targets+=("$(basename "$seeds" .seeds)"); done
fi
cmake --build "$dir" -j "$(nproc)" --target "${targets[@]}"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures="$dir/fuzz/failures"
rm -rf "$failures"

# Qt stays offscreen and away from the user's folders.
export QT_QPA_PLATFORM=offscreen
for sub in home data config cache runtime; do mkdir -p "$work/env/$sub"; done
chmod 700 "$work/env/runtime"
export HOME="$work/env/home" XDG_DATA_HOME="$work/env/data" XDG_CONFIG_HOME="$work/env/config" \
    XDG_CACHE_HOME="$work/env/cache" XDG_RUNTIME_DIR="$work/env/runtime"
export ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp" \
    UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1

printf '\n%-18s %12s %8s %8s %8s %6s %8s\n' target executions cov ft crashes hangs seconds
status=0
passed=0
failed=0
for target in "${targets[@]}"; do
    corpus="$work/$target/corpus"
    artifacts="$work/$target/artifacts"
    log="$work/$target/log"
    mkdir -p "$corpus" "$artifacts"
    dict=()
    n=0
    while read -r kind path; do
        if [ "$kind" = dict ]; then
            [ -n "$path" ] && dict=("-dict=$path")
        elif [ -d "$path" ]; then
            while IFS= read -r -d '' file; do
                n=$((n + 1))
                cp "$file" "$corpus/$n-$(basename "$file")"
            done < <(find "$path" -type f -print0)
        fi
    done <"$dir/fuzz/$target.seeds"

    start=$(date +%s)
    set +e
    "$dir/fuzz/$target" -max_total_time="$seconds" -timeout=1 -print_final_stats=1 \
        -artifact_prefix="$artifacts/" "${dict[@]}" "$corpus" >"$log" 2>&1
    rc=$?
    set -e
    elapsed=$(($(date +%s) - start))

    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    # A run that crashed on a seed has no coverage line.
    cov=$(grep -o ' cov: [0-9]*' "$log" | tail -1 | tr -dc 0-9 || true)
    ft=$(grep -o ' ft: [0-9]*' "$log" | tail -1 | tr -dc 0-9 || true)
    hangs=$(find "$artifacts" -name 'timeout-*' | wc -l)
    crashes=$(find "$artifacts" -type f ! -name 'timeout-*' | wc -l)
    # A report that did not stop the run still fails it.
    if [ "$crashes" -eq 0 ] && grep -qE 'runtime error:|ERROR: (Address|Leak|UndefinedBehavior)Sanitizer|ERROR: libFuzzer' "$log"; then
        crashes=1
    fi
    printf '%-18s %12s %8s %8s %8s %6s %8s\n' "$target" "${runs:-?}" "${cov:-?}" "${ft:-?}" "$crashes" "$hangs" "$elapsed"
    if [ "$rc" -ne 0 ] || [ "$crashes" -ne 0 ] || [ "$hangs" -ne 0 ]; then
        status=1
        failed=$((failed + 1))
        mkdir -p "$failures/$target"
        cp "$log" "$failures/$target/log"
        cp -r "$artifacts/." "$failures/$target/"
    else
        passed=$((passed + 1))
    fi
done

if [ "$status" -ne 0 ]; then
    echo
    for log in "$failures"/*/log; do
        echo "---- $(basename "$(dirname "$log")"): the end of its log"
        grep -vE '^#[0-9]+|^\s+NEW_FUNC' "$log" | tail -40 || true
    done
    echo "Failing inputs and logs: $failures (add each input to fuzz/regressions/<target>/ once fixed)"
fi
echo "fuzz: $passed passed, $failed failed"
exit "$status"
