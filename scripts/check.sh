#!/usr/bin/env bash
# check.sh [format|tidy|asan|tsan|fuzz [SECONDS]]: slower checks that test.sh does not run.
# Without an argument it runs all except fuzz.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
install_packages "${build_packages[@]}" "${test_packages[@]}" "${check_packages[@]}"
cd "$root"

sources() { git ls-files '*.cpp' '*.h'; }

format() { sources | xargs clang-format-14 --dry-run -Werror; }
tidy() { cmake --workflow --preset tidy; }
asan() { cmake --workflow --preset asan; }
tsan() { cmake --workflow --preset tsan; }
fuzz() {
  cmake --workflow --preset fuzz
  local seconds=${1:-600} target name
  [ ! -d /dev/shm ] || export TMPDIR=/dev/shm  # some targets write files
  for target in build/fuzz/fuzz/*_fuzz; do
    name=$(basename "$target")
    mkdir -p "build/fuzz/corpus/$name"
    "$target" -max_total_time="$seconds" -timeout=25 -print_final_stats=1 \
      -artifact_prefix="build/fuzz/$name-" "build/fuzz/corpus/$name" "fuzz/corpus/${name%_fuzz}"
  done
}

case "${1:-all}" in
  format | tidy | asan | tsan) "$1" ;;
  fuzz) fuzz "${2:-600}" ;;
  all) format && tidy && asan && tsan ;;
  *) echo "uso: check.sh [format|tidy|asan|tsan|fuzz [SEGUNDOS]]" >&2; exit 2 ;;
esac
