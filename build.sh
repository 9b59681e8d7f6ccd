#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job or the tests.
#
#   ./build.sh run                      build, then run the main job (the demo host's session)
#   ./build.sh test                     build, then run every test
#   ./build.sh test --sanitize address,undefined   the same in a sanitizer build (build-asan/)
#   ./build.sh test --sanitize thread --label threaded   threaded tests under ThreadSanitizer
#   ./build.sh test --exclude-label packaging            every test but those with the label
#   ./build.sh bench                    build, then run the benchmarks
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

usage() { sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//'; exit 2; }

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
sanitize=""; label=""; exclude_label=""
while [ $# -gt 0 ]; do
    case "$1" in
        --sanitize) sanitize="$2"; shift 2 ;;
        --label) label="$2"; shift 2 ;;
        --exclude-label) exclude_label="$2"; shift 2 ;;
        *) usage ;;
    esac
done

case "$sanitize" in
    "") default_dir=build ;;
    thread) default_dir=build-tsan ;;
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
cmake -S . -B "$build_dir" "${configure_args[@]}" >/dev/null
cmake --build "$build_dir" -j "$jobs"

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
    *) usage ;;
esac
