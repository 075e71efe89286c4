#!/bin/bash
# The commands of a first hour: what they say of themselves, and how they show a long build.
# Usage: commands_test.sh PROJECT
set -euo pipefail

readonly project=$1
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
failures=0

check() { # WHAT EXPECTED ACTUAL
    if [[ $2 != "$3" ]]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- got\n%s\n' "$1" "$2" "$3" >&2
        failures=$((failures + 1))
    fi
}

outcome_of() { # COMMAND...: its exit status and everything it prints
    local status=0 text
    text=$("$@" 2>&1 </dev/null) || status=$?
    echo "$status $text"
}

# --- ./test and ./run ---------------------------------------------------------------------

check "the labels in ./test --help" \
    "$(cd "$project/tests" && printf '%s\n' */CMakeLists.txt | sed 's|/.*||; /support/d')" \
    "$("$project/test" --help | sed -n '/--label/,/--checks/{/--checks/d; s/.*label: //; p}' |
        grep -o '[a-z]*' | sort)"
check "./test with a value missing" "2 test: --label needs a value; try --help" \
    "$(outcome_of "$project/test" --label)"
check "./run --shell without a tty" \
    "2 ./run: --shell needs a keyboard: standard input is not a tty" \
    "$(outcome_of "$project/run" --shell)"

# --- A long build -------------------------------------------------------------------------

cat >"$work/build" <<'BUILD'
#!/bin/bash
echo 'ninja: Entering directory `x'"'"
for percent in '  4' ' 10' ' 11' ' 50' '100'; do echo "${NINJA_STATUS/\%p/$percent%}Building x"; done
echo 'x.cpp:1: error: no such thing' >&2
echo 'ninja: build stopped: subcommand failed.'
exit 3
BUILD
chmod 755 "$work/build"
without_seconds() { sed 's/after [0-9]* s/after N s/'; }
readonly progress=$'   10 % after N s\n   50 % after N s\n  100 % after N s'
readonly complaint=$'x.cpp:1: error: no such thing\nninja: build stopped: subcommand failed.'
check "a build that fails" "3 $progress"$'\n'"$complaint" \
    "$(outcome_of "$project/scripts/show-progress" "$work/build" | without_seconds)"
echo configured >"$work/log"
check "a build with a log" "3 $progress" \
    "$(outcome_of "$project/scripts/show-progress" --log "$work/log" "$work/build" | without_seconds)"
check "the log" $'configured\n'"$complaint" "$(<"$work/log")"

# --- Pages --------------------------------------------------------------------------------

# Other than in the program, whose lines may repeat; without the comments behind commands.
# shellcheck disable=SC2016 # backquotes of Markdown
said_twice() { sed '/^```c$/,/^```$/d; s/  *#.*//; s/^ *//' "$1" | awk 'length > 12' | sort | uniq -d; }
check "lines that the README has twice" "" "$(said_twice "$project/README.md")"
check "subjects that the CHANGELOG has twice" "" \
    "$(sed -n 's/^- \(The \)\?\([^ ,:;.]*\).*/\2/p' "$project/CHANGELOG.md" | sort | uniq -d)"

((failures == 0)) || exit 1
