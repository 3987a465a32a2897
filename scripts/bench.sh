#!/usr/bin/env bash
# bench.sh: installs what is missing, builds, and runs the benchmarks, each beside its peer.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${packages[@]}" "${display_packages[@]}" libbenchmark-dev
build release -DTARVIK_BUILD_BENCHMARKS=ON
"$project/tests/gui/with_display.sh" "$project/build/release/bin/start_bench" --benchmark_min_time=3
