#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job or the tests.
#
#   ./build.sh run                      build, then run the main job (the demo host's session)
#   ./build.sh run-store                build, then the main job with a statistics store: a
#                                       ClickHouse server of its own, the demo host uploading
#                                       its session into it, two of the analysts' answers
#   ./build.sh test                     build, then run every test
#   ./build.sh test --sanitize address,undefined   the same in a sanitizer build (build-asan/)
#   ./build.sh test --sanitize thread --label threaded   threaded tests under ThreadSanitizer
#   ./build.sh test --exclude-label packaging            every test but those with the label
#   ./build.sh bench                    build, then run the benchmarks
#   ./build.sh fuzz [--seconds N] [TARGET...]   clang build with libFuzzer (build-fuzz/), then
#                                       fuzz each target (default: all) N seconds (default 60),
#                                       JOBS targets at a time; fails on any finding (README: Fuzzing)
#   --qt 6                              any of these against Qt 6 instead of Qt 5 (build-qt6/,
#                                       build-qt6-asan/, ...), installing Qt 6's packages
#   --label L                           builds only what the tests of label L need, then runs them
#
# Environment: BUILD_DIR overrides the build directory, JOBS the build parallelism;
# KT_PAIRED_BUILD_DIR names a built tree of the other Qt major, which the packaging tests then
# install into the same prefix as this build (.ci/run's qt6 stage pairs it with build/).
set -euo pipefail

cd "$(dirname "$0")"

PACKAGES=(cmake make g++ pkg-config libxerces-c-dev xsdcxx libboost-dev
          libgoogle-glog-dev googletest libgtest-dev libgmock-dev libbenchmark-dev xvfb xauth)
# Qt by the major chosen (--qt); its private headers: tests inspect an object's installed event
# filters. Qt 6 keeps QRegExp, which id expressions are written in, in its compatibility module.
QT_PACKAGES_5=(qtbase5-dev qtbase5-private-dev)
QT_PACKAGES_6=(qt6-base-dev qt6-base-private-dev qt6-5compat-dev)
# Locale sources: a test compiles a decimal-comma locale from them with localedef.
PACKAGES+=(locales)

# The statistics store (run-store and the store tests): Debian's ClickHouse, and zlib for the
# uploader's gzip.
PACKAGES+=(clickhouse-server clickhouse-client zlib1g-dev)

usage() { sed -n '2,/^[^#]/p' "$0" | sed -n 's/^# \{0,1\}//p'; exit 2; }

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
sanitize=""; label=""; exclude_label=""; seconds=60; fuzz_targets=(); qt=5
while [ $# -gt 0 ]; do
    case "$1" in
        --qt) qt="$2"; shift 2 ;;
        --sanitize) sanitize="$2"; shift 2 ;;
        --label) label="$2"; shift 2 ;;
        --exclude-label) exclude_label="$2"; shift 2 ;;
        --seconds) seconds="$2"; shift 2 ;;
        -*) usage ;;
        *) [ "$command" = fuzz ] || usage; fuzz_targets+=("$1"); shift ;;
    esac
done

case "$qt" in
    5) PACKAGES+=("${QT_PACKAGES_5[@]}") ;;
    6) PACKAGES+=("${QT_PACKAGES_6[@]}") ;;
    *) usage ;;
esac

# The fuzzing build: clang's libFuzzer over the sanitizers, only the fuzz targets.
if [ "$command" = fuzz ]; then
    PACKAGES+=(clang libclang-rt-14-dev)
    sanitize=address,undefined
    [ ${#fuzz_targets[@]} -gt 0 ] || fuzz_targets=(filter aggregator main main_over events check)
fi

default_dir=build
[ "$qt" = 5 ] || default_dir+="-qt$qt"
case "$command:$sanitize" in
    fuzz:*) default_dir+=-fuzz ;;
    *:) ;;
    *:thread) default_dir+=-tsan ;;
    *) default_dir+=-asan ;;
esac
build_dir="${BUILD_DIR:-$default_dir}"
jobs="${JOBS:-$(nproc)}"

install_missing

export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-suppressions=$PWD/.ci/lsan.supp:print_suppressions=0}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
export TSAN_OPTIONS="${TSAN_OPTIONS:-suppressions=$PWD/.ci/tsan.supp:halt_on_error=1:second_deadlock_stack=1}"

# Each target is compiled as a few unity sources, with line tables as its debug information
# (backtraces and sanitizer reports keep their files and lines): less than half the build time of
# one compilation per source with full debug information. Sanitizer and fuzzing builds optimise
# at -O1, as the sanitizers advise.
optimise=-O2
if [ -n "$sanitize" ]; then optimise=-O1; fi
configure_args=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DKT_QT_MAJOR_VERSION="$qt"
                -DCMAKE_UNITY_BUILD=ON "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=$optimise -g1 -DNDEBUG"
                -DKT_TRACKING_SANITIZE="$sanitize"
                -DKT_TRACKING_PAIRED_BUILD_DIR="${KT_PAIRED_BUILD_DIR:-}")
# Sanitizer builds exist to run tests: no benchmarks or examples there.
[ -n "$sanitize" ] && configure_args+=(-DKT_TRACKING_BUILD_BENCH=OFF -DKT_TRACKING_BUILD_EXAMPLES=OFF)
build_targets=()
if [ "$command" = fuzz ]; then
    configure_args+=(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DKT_TRACKING_FUZZ=ON
                     -DKT_TRACKING_BUILD_TESTS=OFF -DKT_TRACKING_INSTALL=OFF)
    build_targets=(--target "${fuzz_targets[@]/#/fuzz_}")
fi
cmake -S . -B "$build_dir" "${configure_args[@]}" >/dev/null
# A label's tests need only their own programs (the build writes which labels have a target).
if [ -n "$label" ] && grep -qx "$label" "$build_dir/TestLabels.txt" 2>/dev/null; then
    build_targets=(--target "tests-$label")
fi
cmake --build "$build_dir" -j "$jobs" "${build_targets[@]}"

# ThreadSanitizer needs a memory layout that high address-space randomisation breaks.
run_prefix=()
if [ "$sanitize" = thread ] && command -v setarch >/dev/null; then
    run_prefix=(setarch "$(uname -m)" -R)
fi

# A port of 127.0.0.1 that nobody listens on.
free_port() {
    local port
    while :; do
        port=$((20000 + RANDOM % 40000))
        (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || { echo "$port"; return; }
    done
}

# The statement of Lib/Analytics/Store/queries.sql after the line "-- query: NAME".
store_query() {
    awk -v name="$1" '
        $0 == "-- query: " name { found = 1; next }
        found && /^--/ { next }
        found { print; if ($0 ~ /;[ \t]*$/) exit }' Lib/Analytics/Store/queries.sql
}

# The main job with a store: a ClickHouse server of its own (a temporary directory, free ports,
# no system service), the schema, the demo session uploaded by KtDemoHost --upload, which waits
# until the upload has drained, two of the analysts' queries answered, the server stopped.
store_pid=""
store_work=""
stop_store() {
    if [ -n "$store_pid" ]; then
        kill -TERM "$store_pid" 2>/dev/null || true
        wait "$store_pid" 2>/dev/null || true
    fi
    [ -z "$store_work" ] || rm -rf "$store_work"
}

run_store() {
    local server http tcp
    server="$(PATH="$PATH:/usr/sbin:/sbin" command -v clickhouse-server)"
    store_work="$(mktemp -d)"
    local work="$store_work"
    trap stop_store EXIT
    http="$(free_port)"; tcp="$(free_port)"
    while [ "$tcp" = "$http" ]; do tcp="$(free_port)"; done
    cp Lib/Analytics/Store/local/config.xml Lib/Analytics/Store/local/users.xml "$work/"
    "$server" --config-file="$work/config.xml" -- --path="$work/data/" \
        --tmp_path="$work/data/tmp/" --user_files_path="$work/data/user_files/" \
        --format_schema_path="$work/data/format_schemas/" --http_port="$http" --tcp_port="$tcp" \
        --logger.log="$work/server.log" --logger.errorlog="$work/server.err.log" \
        >"$work/server.out" 2>&1 &
    store_pid=$!
    local client=(clickhouse-client --host 127.0.0.1 --port "$tcp")
    local tries=0
    until "${client[@]}" --query "SELECT 1" >/dev/null 2>&1; do
        tries=$((tries + 1))
        if ! kill -0 "$store_pid" 2>/dev/null || [ "$tries" -gt 600 ]; then
            echo "clickhouse-server did not start:"
            tail -n 20 "$work/server.err.log" "$work/server.out" 2>/dev/null || true
            exit 1
        fi
        sleep 0.1
    done
    echo "ClickHouse $("${client[@]}" --query "SELECT version()") on 127.0.0.1:$http (data in $work)"
    "${client[@]}" --query "CREATE DATABASE kt"
    "${client[@]}" --database kt --multiquery <Lib/Analytics/Store/schema.sql
    # The session's printout and the toolkit's notes go to files; the upload's counters show.
    if ! "${run_prefix[@]}" "$build_dir/Examples/DemoHost/KtDemoHost" \
            --upload "http://127.0.0.1:$http/" >"$work/session.txt" 2>"$work/demo.err"; then
        cat "$work/demo.err"
        exit 1
    fi
    echo "The demo session: $(grep -c '^[^[:space:]]' "$work/session.txt") events delivered;" \
         "$(grep '^upload:' "$work/demo.err")"
    local format=(--format PrettyCompactMonoBlock)
    [ -t 1 ] || format+=(--output_format_pretty_color=0)
    for query in events_per_day_and_version capture_settings_per_version; do
        echo
        grep -A1 "^-- query: $query\$" Lib/Analytics/Store/queries.sql | tail -n 1
        "${client[@]}" --database kt "${format[@]}" --query "$(store_query "$query")"
    done
}

case "$command" in
    run)
        "${run_prefix[@]}" "$build_dir/Examples/DemoHost/KtDemoHost"
        ;;
    run-store)
        run_store
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
        "$build_dir/Bench/KtAnalyticsBench"
        ;;
    fuzz)
        # Each target grows a working corpus of its own from the committed one; what it finds
        # goes to its findings directory. JOBS targets run at a time, each for its own seconds.
        fuzz_one() {
            local target="$1" work="$build_dir/fuzz-work/$1" dict=Tests/Fuzz/documents.dict
            mkdir -p "$work/corpus" "$work/findings"
            [ "$target" = events ] && dict=Tests/Fuzz/events.dict
            local inputs=("$work/corpus" "Tests/Fuzz/corpus/$target")
            [ -d "Tests/Fuzz/reproducers/$target" ] && inputs+=("Tests/Fuzz/reproducers/$target")
            "$build_dir/Tests/Fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=30 \
                -dict="$dict" -artifact_prefix="$work/findings/" -print_final_stats=1 \
                "${inputs[@]}" >"$work/fuzz.log" 2>&1
        }
        report() {
            local target="$1" status="$2" work="$build_dir/fuzz-work/$1"
            echo "fuzz_$target: $seconds seconds, log in $work/fuzz.log"
            if [ "$status" -eq 0 ]; then
                grep -E '^#[0-9]+[[:space:]]+DONE|stat::number_of_executed_units|stat::average_exec_per_sec' \
                    "$work/fuzz.log" || true
            else
                tail -n 60 "$work/fuzz.log"
                echo "fuzz_$target found a fault; the input is in $work/findings/:"
                echo "copy it to Tests/Fuzz/reproducers/$target/ and fix what it shows"
                failed+=("$target")
            fi
        }
        failed=(); running=()
        for target in "${fuzz_targets[@]}"; do
            fuzz_one "$target" &
            running+=("$!:$target")
            if [ ${#running[@]} -ge "$jobs" ]; then
                status=0; wait "${running[0]%%:*}" || status=$?
                report "${running[0]#*:}" "$status"
                running=("${running[@]:1}")
            fi
        done
        for entry in "${running[@]}"; do
            status=0; wait "${entry%%:*}" || status=$?
            report "${entry#*:}" "$status"
        done
        [ ${#failed[@]} -eq 0 ] || { echo "findings: ${failed[*]}"; exit 1; }
        ;;
    *) usage ;;
esac
