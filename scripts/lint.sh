#!/usr/bin/env bash
# lint.sh [SOURCE...]: clang-tidy and cppcheck over what is deployed: libraries, programs, samples; of clang-tidy, only
# over the sources that are named, if any are. What clang-tidy asks is in .clang-tidy. Prints what it found; exit code 1
# with findings.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${packages[@]}" clang-tidy-16 cppcheck
# The compile commands, and the headers that the build makes.
[ -e "$project/build/release/compile_commands.json" ] || build release
cd "$project"
mapfile -t deployed < <(git ls-files 'libs/*.cpp' 'apps/*.cpp' 'sdk/*.cpp')
# This machine has commands for its own platform's sources alone.
compiled=()
for source in "${@:-${deployed[@]}}"; do
  case $source in *_mac.cpp) ;; *) compiled+=("$source") ;; esac
done

# Without the one flag of gcc's that clang does not know, and without -Werror: an error cannot be excused by a NOLINT.
mkdir -p build/lint
sed 's/ -fno-gnu-unique//; s/ -Werror//' build/release/compile_commands.json >build/lint/compile_commands.json

code=0
say "clang-tidy: ${#compiled[@]} sources"
printf '%s\0' "${compiled[@]}" |
  xargs -0 -P "$(nproc)" -n 4 clang-tidy-16 -p build/lint --extra-arg=-Wreserved-identifier --quiet 2>/dev/null || code=1

# missingReturn: gcc's -Wreturn-type knows functions that do not return, cppcheck no templates of them.
say "cppcheck: ${#deployed[@]} sources"
cppcheck --enable=warning,performance,portability --inline-suppr --suppress=missingReturn --suppress='*:/usr/*' \
  --library=wxwidgets --std=c++20 --language=c++ -Ilibs -Iapps -Isdk/include --quiet -j "$(nproc)" --error-exitcode=1 \
  --template='{file}:{line}: {severity}: {message} [{id}]' "${deployed[@]}" || code=1
exit "$code"
