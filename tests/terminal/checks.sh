# Shared by the scripts that look at a disposable terminal from outside.
# Called as SCRIPT TERMINAL BUILD-DIRECTORY root|user|contained; "user" is an ordinary user,
# "contained" is root in a container, who may not make namespaces without one for users.
# Exit status 77: cannot be run here.
# shellcheck shell=bash
set -euo pipefail

program=$1 build=$2 mode=$3
export QVTC_RECORDER=$build/terminal/recorder_shell
unset QVTC_SHARE QVTC_UPDATE_GOLDEN CI GTEST_OUTPUT
scratch=$(mktemp -d)
chmod 777 "$scratch"
trap 'rm -rf "$scratch"' EXIT
failures=0

# The real thing for "user": without any rights, provided that the files here can be read then.
# nobody owns no files, so a directory of its own belongs to the tests.
launch=()
if [[ $mode != user && $EUID != 0 ]]; then
    echo "skipped: only root can run this" >&2
    exit 77
elif [[ $mode == contained ]]; then
    launch=(setpriv --bounding-set=-sys_admin --inh-caps=-sys_admin)
    mode=user
elif [[ $mode == user && $EUID == 0 ]]; then
    launch=(setpriv --reuid 65534 --regid 65534 --clear-groups)
    if ! "${launch[@]}" test -r "$program" -a -r "$QVTC_RECORDER"; then
        launch=()
        program_options=(--as-user)
    fi
fi
if [[ $mode == user ]] && ! "${launch[@]}" unshare -U -r -m true 2>/dev/null; then
    echo "skipped: ordinary users may not make namespaces here" >&2
    exit 77
fi

terminal() { "${launch[@]}" "$program" ${program_options[@]+"${program_options[@]}"} "$@"; }

# Runs in the background so that $! is the terminal itself.
terminal_in_background() {
    "${launch[@]}" "$program" ${program_options[@]+"${program_options[@]}"} "$@" &
}

check() { # WHAT EXPECTED ACTUAL
    if [[ $2 != "$3" ]]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- got\n%s\n' "$1" "$2" "$3" >&2
        failures=$((failures + 1))
    fi
}

wait_until() { # COMMAND...: at most ten seconds
    local i
    for ((i = 0; i < 500; i++)); do
        if "$@"; then return 0; fi
        sleep 0.02
    done
    return 1
}

finish() {
    ((failures == 0)) || exit 1
    echo "all as expected ($mode)"
}
