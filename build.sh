#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job or the tests.
#
#   ./build.sh run                      build, then run the main job (the demo host's session)
#   ./build.sh test                     build, then run every test
#   ./build.sh test --sanitize address,undefined   the same in a sanitizer build (build-asan/)
#   ./build.sh test --sanitize thread --label threaded   threaded tests under ThreadSanitizer
#   ./build.sh test --exclude-label packaging            every test but those with the label
#   ./build.sh bench                    build, then run the benchmarks
#   ./build.sh fuzz [--seconds N] [TARGET...]   clang build with libFuzzer (build-fuzz/), then
#                                       fuzz each target (default: all) N seconds (default 60);
#                                       fails on any finding (README: Fuzzing)
#
# Environment: BUILD_DIR overrides the build directory, JOBS the build parallelism.
set -euo pipefail

cd "$(dirname "$0")"

PACKAGES=(cmake make g++ pkg-config qtbase5-dev libxerces-c-dev xsdcxx libboost-dev
          libgoogle-glog-dev googletest libgtest-dev libgmock-dev libbenchmark-dev xvfb xauth)
# Qt's private headers: tests inspect an object's installed event filters.
PACKAGES+=(qtbase5-private-dev)
# Locale sources: a test compiles a decimal-comma locale from them with localedef.
PACKAGES+=(locales)

usage() { sed -n '2,14p' "$0" | sed 's/^# \{0,1\}//'; exit 2; }

install_missing() {
    local missing=()
    for package in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" \
            || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

command="${1:-}"; [ -n "$command" ] || usage; shift
sanitize=""; label=""; exclude_label=""; seconds=60; fuzz_targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --sanitize) sanitize="$2"; shift 2 ;;
        --label) label="$2"; shift 2 ;;
        --exclude-label) exclude_label="$2"; shift 2 ;;
        --seconds) seconds="$2"; shift 2 ;;
        -*) usage ;;
        *) [ "$command" = fuzz ] || usage; fuzz_targets+=("$1"); shift ;;
    esac
done

# The fuzzing build: clang's libFuzzer over the sanitizers, only the fuzz targets.
if [ "$command" = fuzz ]; then
    PACKAGES+=(clang libclang-rt-14-dev)
    sanitize=address,undefined
    [ ${#fuzz_targets[@]} -gt 0 ] || fuzz_targets=(filter aggregator main main_over events check)
fi

case "$command:$sanitize" in
    fuzz:*) default_dir=build-fuzz ;;
    *:) default_dir=build ;;
    *:thread) default_dir=build-tsan ;;
    *) default_dir=build-asan ;;
esac
build_dir="${BUILD_DIR:-$default_dir}"
jobs="${JOBS:-$(nproc)}"

install_missing

export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-suppressions=$PWD/.ci/lsan.supp:print_suppressions=0}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
export TSAN_OPTIONS="${TSAN_OPTIONS:-suppressions=$PWD/.ci/tsan.supp:halt_on_error=1:second_deadlock_stack=1}"

configure_args=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DKT_TRACKING_SANITIZE="$sanitize")
# Sanitizer builds exist to run tests: no benchmarks or examples there.
[ -n "$sanitize" ] && configure_args+=(-DKT_TRACKING_BUILD_BENCH=OFF -DKT_TRACKING_BUILD_EXAMPLES=OFF)
build_targets=()
if [ "$command" = fuzz ]; then
    configure_args+=(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DKT_TRACKING_FUZZ=ON
                     -DKT_TRACKING_BUILD_TESTS=OFF -DKT_TRACKING_INSTALL=OFF)
    build_targets=(--target "${fuzz_targets[@]/#/fuzz_}")
fi
cmake -S . -B "$build_dir" "${configure_args[@]}" >/dev/null
cmake --build "$build_dir" -j "$jobs" "${build_targets[@]}"

# ThreadSanitizer needs a memory layout that high address-space randomisation breaks.
run_prefix=()
if [ "$sanitize" = thread ] && command -v setarch >/dev/null; then
    run_prefix=(setarch "$(uname -m)" -R)
fi

case "$command" in
    run)
        "${run_prefix[@]}" "$build_dir/Examples/DemoHost/KtDemoHost"
        ;;
    test)
        ctest_args=(--test-dir "$build_dir" --output-on-failure -j "$jobs")
        [ -n "$label" ] && ctest_args+=(-L "$label")
        [ -n "$exclude_label" ] && ctest_args+=(-LE "$exclude_label")
        "${run_prefix[@]}" ctest "${ctest_args[@]}"
        ;;
    bench)
        "$build_dir/Bench/KtTrackingBench"
        "$build_dir/Bench/KtTrackingInternalsBench"
        ;;
    fuzz)
        # Each target grows a working corpus of its own from the committed one; what it finds
        # goes to its findings directory.
        failed=()
        for target in "${fuzz_targets[@]}"; do
            work="$build_dir/fuzz-work/$target"
            mkdir -p "$work/corpus" "$work/findings"
            dict=Tests/Fuzz/documents.dict
            [ "$target" = events ] && dict=Tests/Fuzz/events.dict
            inputs=("$work/corpus" "Tests/Fuzz/corpus/$target")
            [ -d "Tests/Fuzz/reproducers/$target" ] && inputs+=("Tests/Fuzz/reproducers/$target")
            echo "fuzz_$target: $seconds seconds, log in $work/fuzz.log"
            if "$build_dir/Tests/Fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=30 \
                   -dict="$dict" -artifact_prefix="$work/findings/" -print_final_stats=1 \
                   "${inputs[@]}" >"$work/fuzz.log" 2>&1; then
                grep -E '^#[0-9]+[[:space:]]+DONE|stat::number_of_executed_units|stat::average_exec_per_sec' \
                    "$work/fuzz.log" || true
            else
                tail -n 60 "$work/fuzz.log"
                echo "fuzz_$target found a fault; the input is in $work/findings/:"
                echo "copy it to Tests/Fuzz/reproducers/$target/ and fix what it shows"
                failed+=("$target")
            fi
        done
        [ ${#failed[@]} -eq 0 ] || { echo "findings: ${failed[*]}"; exit 1; }
        ;;
    *) usage ;;
esac
