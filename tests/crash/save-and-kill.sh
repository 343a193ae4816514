#!/usr/bin/env bash
# The crash test of saving: a program that saves model after model to one file is killed
# (SIGKILL) at a random moment, RUNS times. After every kill the file must read back whole and
# hold either the model it held before or one the killed program went on to save. At the end
# one save that is not killed must leave no temporary file behind.
# Usage: save-and-kill.sh SAVER RUNS
set -euo pipefail

if [ $# -ne 2 ]; then
    echo "usage: $0 SAVER RUNS" >&2
    exit 2
fi
saver=$1
runs=$2
dir=$(mktemp -d "${TMPDIR:-/tmp}/vorta-crash-XXXXXX")
trap 'rm -rf "$dir"' EXIT
file="$dir/model.vld"

# The first model is saved whole; each run then starts with the next number.
"$saver" save "$file" 0 & pid=$!
until [ -s "$file" ] && "$saver" check "$file" >/dev/null 2>&1; do sleep 0.05; done
kill -9 "$pid"; wait "$pid" 2>/dev/null || true
held=$("$saver" check "$file")
next=1000
failures=0
inside=0
for ((run = 1; run <= runs; run++)); do
    "$saver" save "$file" "$next" & pid=$!
    # Anywhere within the start, the building of models and several saves.
    sleep "0.$(printf '%03d' $((RANDOM % 400)))"
    kill -9 "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    # A temporary file left now is a save killed between its start and its rename; the next
    # save that runs to its end removes it.
    inside=$((inside + $(find "$dir" -mindepth 1 -name '.model.vld.*' | wc -l)))
    if ! now=$("$saver" check "$file" 2>&1); then
        echo "run $run: the model file cannot be read back: $now" >&2
        failures=$((failures + 1))
    elif [ "$now" != "$held" ] && { [ "$now" -lt "$next" ] || [ "$now" -ge $((next + 1000)) ]; }; then
        echo "run $run: the model file holds model $now, neither $held nor a new one" >&2
        failures=$((failures + 1))
    else
        held=$now
    fi
    next=$((next + 1000))
done

# A save that runs to its end removes what the killed ones left.
"$saver" save "$file" "$next" & pid=$!
until [ "$("$saver" check "$file" 2>/dev/null || echo 0)" -ge $((next + 2)) ]; do sleep 0.05; done
kill -STOP "$pid"
left=$(find "$dir" -mindepth 1 -name '.model.vld.*' ! -name ".model.vld.$pid-*" | wc -l)
kill -9 "$pid"; wait "$pid" 2>/dev/null || true
if [ "$left" -ne 0 ]; then
    echo "$left temporary files were left behind" >&2
    failures=$((failures + 1))
fi
echo "crash test of saving: $runs runs ($inside killed inside a save), $failures failures"
[ "$failures" -eq 0 ]
