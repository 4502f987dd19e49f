#!/usr/bin/env bash
# Runs the JavaScript tests on several releases of Node.js, and the tour on Deno and Bun; prints a table at the end.
# The engines are npm packages that contain the program itself. They are fetched once and kept in build/engines.
set -euo pipefail
cd "$(dirname "$0")/.."

engines=$PWD/build/engines
arch=$(node -p process.arch)
results=()
failures=0

# Installs an npm package into its own folder, unless it is already there.
fetch() {
    local folder=$1 package=$2
    if [ ! -d "$engines/$folder/node_modules" ]; then
        npm install --prefix "$engines/$folder" --no-save --ignore-scripts --loglevel=error "$package"
    fi
}

# Runs a command, shows the end of what it prints, and notes how it went, with its totals and notes, for the table.
try() {
    local engine=$1 what=$2 log
    shift 2
    log=$engines/${engine// /-}.log
    echo "== $engine: $what"
    local outcome=passed
    if ! "$@" >"$log" 2>&1; then
        outcome=FAILED
        failures=$((failures + 1))
        tail -n 200 "$log"
    else
        grep -E '^(# (tests|pass|fail|skipped) |ℹ (tests|pass|fail|skipped) |note: |[0-9]+ passed, [0-9]+ failed)' "$log" || true
    fi
    results+=("$(printf '%-16s %-28s %-7s %s' "$engine" "$what" "$outcome" \
        "$(sed -n -E 's/^(# |ℹ )((pass|fail|skipped) [0-9]+)$/\2/p; /^(note: |[0-9]+ passed, )/p' "$log" | paste -sd ';')")")
}

# The answers and errors that the tour shows.
tour_answers() {
    "$@" examples/tour.mjs | grep -E '^    (→|and it threw)|^All sixteen'
}

same_tour() {
    diff <(tour_answers node) <(tour_answers "$@")
}

for release in 18 20 22 24 26; do
    fetch "node-$release" "node-linux-$arch@$release"
    program=$engines/node-$release/node_modules/node-linux-$arch/bin/node
    try "Node.js $("$program" -p process.versions.node)" 'all JavaScript tests' \
        env NODE="$program" scripts/js_tests.sh test/*/*.test.mjs
done

case $arch in
    x64) deno=@deno/linux-x64-glibc bun=@oven/bun-linux-x64-baseline ;;
    arm64) deno=@deno/linux-arm64-glibc bun=@oven/bun-linux-aarch64 ;;
esac
fetch deno "$deno"
program=$engines/deno/node_modules/$deno/deno
try "Deno $("$program" --version | sed -n 's/^deno \([0-9.]*\).*/\1/p')" 'the tour, as on Node.js' \
    same_tour "$program" run --allow-all
fetch bun "$bun"
program=$engines/bun/node_modules/$bun/bin/bun
try "Bun $("$program" --version)" 'the tour, as on Node.js' same_tour "$program"

echo
printf '%s\n' "${results[@]}"
exit "$((failures > 0))"
