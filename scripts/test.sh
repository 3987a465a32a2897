#!/usr/bin/env bash
# test.sh [PRESET]: installs what is missing, builds, and runs the whole suite. PRESET: release (default), dev,
# asan or tsan.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=${1:-release}
install_missing "${packages[@]}" "${display_packages[@]}" strace
build "$preset"
cd "$project"
ctest --preset "$preset" --parallel "$(nproc)"
