#!/bin/sh
# Fuzzes the reference service's items with Clang's libFuzzer, starting from the corpus in the repository. Leaves the
# log, and any input that made it fail, in build/fuzz.
#   scripts/fuzz.sh [seconds]     600 by default, 15 with CI=true
set -eu
cd "$(dirname "$0")/.."

if [ "${CI:-}" = true ]; then
  seconds=${1:-15}
else
  seconds=${1:-600}
fi

cmake -G Ninja -S test/fuzz -B build/fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build build/fuzz
found=build/fuzz/corpus/item_text
log=build/fuzz/item_text.log
mkdir -p "$found"
if ! build/fuzz/item_text_fuzz "$found" test/fuzz/corpus/item_text -max_total_time="$seconds" -max_len=2048 \
  -timeout=10 -artifact_prefix=build/fuzz/item_text- -print_final_stats=1 >"$log" 2>&1; then
  tail -n 60 "$log" >&2
  exit 1
fi
echo "items: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs in $seconds s, nothing found"
