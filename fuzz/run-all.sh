#!/usr/bin/env bash
# Runs every libFuzzer target of a TELVANE_FUZZ build for a bounded time each, starting
# from the checked-in seed corpus. New inputs go to a scratch folder, never into the
# repository. Exits non-zero when a target finds a crash, leak or undefined behaviour.
#   fuzz/run-all.sh <build-dir> <seconds-per-target>
set -euo pipefail
build=${1:?usage: run-all.sh <build-dir> <seconds>}
seconds=${2:?usage: run-all.sh <build-dir> <seconds>}
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d "${TMPDIR:-/tmp}/telvane-fuzz.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
status=0
for target in frame_reader message_decoder computer_json agent_inputs txt_record view_models \
    screen_image assistant_navigation crash_report update_feed; do
    binary="$build/fuzz/fuzz_$target"
    if [[ ! -x $binary ]]; then
        echo "missing $binary (configure with -DTELVANE_FUZZ=ON and clang++-14)" >&2
        exit 2
    fi
    mkdir -p "$scratch/$target"
    echo "== fuzz_$target for ${seconds}s"
    if ! "$binary" -max_total_time="$seconds" -rss_limit_mb=2048 -max_len=65536 \
        -artifact_prefix="$scratch/" "$scratch/$target" "$here/corpus/$target"; then
        echo "fuzz_$target FAILED; reproducer:" "$scratch"/crash-* "$scratch"/leak-* \
            "$scratch"/timeout-* 2>/dev/null >&2
        mkdir -p "$build/fuzz-artifacts"
        cp "$scratch"/crash-* "$scratch"/leak-* "$scratch"/timeout-* "$build/fuzz-artifacts/" \
            2>/dev/null || true
        status=1
    fi
done
exit $status
