#!/bin/bash
# The terminal as a command: arguments, exit status, options, signals.
# shellcheck disable=SC2016 # texts for the shells in the terminal
# shellcheck source-path=SCRIPTDIR source=checks.sh
. "${BASH_SOURCE[0]%/*}/checks.sh"

status_of() {
    local status=0
    "$@" >/dev/null 2>&1 || status=$?
    echo "$status"
}

# --- Exit status --------------------------------------------------------------------------
check "status 0" 0 "$(status_of terminal true)"
check "status 7" 7 "$(status_of terminal bash -c 'exit 7')"
check "status after SIGKILL" 137 "$(status_of terminal bash -c 'kill -KILL $$')"
check "status after SIGSEGV" 139 "$(status_of terminal bash -c 'kill -SEGV $$')"
check "nothing said about the signal" "" "$(terminal bash -c 'kill -SEGV $$' 2>&1 || true)"
check "unknown command" "127 disposable-terminal: frobnicate: not found" \
    "$(status_of terminal frobnicate) $(terminal frobnicate 2>&1 || true)"
check "no program" "126 disposable-terminal: /etc/passwd cannot be run" \
    "$(status_of terminal /etc/passwd) $(terminal /etc/passwd 2>&1 || true)"
check "unknown option" "125 disposable-terminal: unknown option --frob; try --help" \
    "$(status_of terminal --frob true) $(terminal --frob true 2>&1 || true)"
check "missing value" "125 disposable-terminal: --share needs a value; try --help" \
    "$(status_of terminal --share) $(terminal --share 2>&1 || true)"
check "missing directory" "disposable-terminal: --share: no such directory: /none" \
    "$(terminal --share /none true 2>&1 || true)"
check "missing recorder" "disposable-terminal: no recorder at /none" \
    "$(terminal --recorder /none true 2>&1 || true)"
check "help" "Usage: disposable-terminal [OPTION]... [--] [COMMAND [ARGUMENT]...]" \
    "$(terminal --help | head -n 1)"

# A namespace in which no further ones are allowed stands for a machine that forbids them.
forbidden() {
    "${launch[@]}" unshare -U -r bash -c \
        'echo 0 >/proc/sys/user/max_user_namespaces && exec "$@"' bash "$program" --as-user true
}
if [[ $mode == user ]]; then
    check "no namespaces" "125 disposable-terminal: this machine gives ordinary users no namespaces of their own. Either
  - run it as root (sudo), or in a container that was started with --privileged; or
  - allow them: sysctl -w kernel.apparmor_restrict_unprivileged_userns=0 (Ubuntu 24.04),
    kernel.unprivileged_userns_clone=1 (older Debian), user.max_user_namespaces=10000 (Red Hat)." \
        "$(status_of forbidden) $(forbidden 2>&1 || true)"
    check "what is missing" "disposable-terminal: running without root: there are no loop devices or
device nodes, and daemons that change their group (dnsmasq without --no-daemon, sshd) fail here." \
        "$(terminal --verbose true 2>&1)"
fi

# --- Arguments, standard input, directory, mode ------------------------------------------
check "arguments" $'<>\n<a b>\n<x\ny>\n<*>\n<--help>' \
    "$(terminal -- printf '<%s>\n' '' 'a b' $'x\ny' '*' --help)"
check "standard input" "typed" "$(echo typed | terminal cat)"
check "default command" "/run/disposable-terminal" \
    "$(echo 'echo /run/disposable-terminal*' | terminal)"
mkdir -p "$scratch/a b,c:d"
chmod 777 "$scratch/a b,c:d"
echo content >"$scratch/a b,c:d/file"
check "working directory" "$scratch/a b,c:d content" \
    "$(cd "$scratch/a b,c:d" && terminal bash -c 'echo "$PWD $(cat file)"')"
check "mode" "mode=$mode" "$(terminal head -n 1 /run/disposable-terminal/about)"
check "command in /tmp" "ran" "$(
    cd /
    printf '#!/bin/bash\necho ran\n' >"$scratch/command"
    chmod 755 "$scratch/command"
    terminal "$scratch/command"
)"

# --- Options ------------------------------------------------------------------------------
mkdir -m 777 "$scratch/shared" "$scratch/golden" "$scratch/more"
terminal --share "$scratch/shared" bash -c "echo out >'$scratch/shared/file'"
check "shared directory" "out" "$(cat "$scratch/shared/file")"
(cd "$scratch" && terminal --share shared bash -c 'echo below >shared/file; echo kept >file')
check "shared below the working directory" "below no" \
    "$(cat "$scratch/shared/file") $([[ -e $scratch/file ]] && echo yes || echo no)"
QVTC_SHARE=$scratch/shared:$scratch/more terminal \
    bash -c "echo 1 >'$scratch/shared/a'; echo 2 >'$scratch/more/b'"
check "shared by the environment" "1 2" "$(cat "$scratch/shared/a") $(cat "$scratch/more/b")"
golden() {
    terminal --golden "$scratch/golden" bash -c \
        "mkdir -p '$scratch/golden' && echo new >'$scratch/golden/file'"
}
golden
CI=true QVTC_UPDATE_GOLDEN=1 golden
check "golden files stay" "" "$(ls "$scratch/golden")"
QVTC_UPDATE_GOLDEN=1 golden
check "golden files on request" "file" "$(ls "$scratch/golden")"
check "environment" "set  passed 1" "$(
    ANY=any PASSED=passed QVTC_ANY=1 terminal --env 'SET=set' --env PASSED --env NONE \
        bash -c 'echo "$SET $ANY$NONE $PASSED $QVTC_ANY"'
)"
mkdir -p "$scratch/image/usr/bin" "$scratch/image/etc/new folder"
printf '#!/bin/bash\necho from the image\n' >"$scratch/image/usr/bin/image-program"
printf '#!/bin/bash\necho replaced\n' >"$scratch/image/usr/bin/uname"
chmod 755 "$scratch/image/usr/bin/"*
echo text >"$scratch/image/etc/new folder/file"
chmod 775 "$scratch/image" "$scratch/image/usr" # rights that / and /usr must not take on
check "image" $'from the image\nreplaced\ntext\n755 755' \
    "$(terminal --image "$scratch/image" bash -c \
        'image-program; uname; cat "/etc/new folder/file"; stat -c %a / /usr | paste -sd " "')"
check "recorder" "bash: as sh" "$(terminal sh -c 'echo "bash: as $0"')"
check "its record" $'true 1\ntrue 2' \
    "$(terminal bash -c 'sh -c "true 1"; sh -c "true 2"; tr "\0" "\n" </run/disposable-terminal/commands' |
        grep '^true')"
check "no recorder" "bash sh" \
    "$(terminal --recorder none bash -c 'readlink /bin/sh; sh -c "echo \$0"' | paste -sd ' ')"

# --- Signals ------------------------------------------------------------------------------
mark=60.$$
# Only of sleep itself is the mark a whole argument; the pattern does not find its own.
is_running() { grep -qsz -- "^6[0].$$\$" /proc/[0-9]*/cmdline; }
is_gone() { ! is_running; }
for signal in TERM HUP KILL; do
    # The second process has a process group and session of its own.
    terminal_in_background bash -c "setsid sleep $mark & sleep $mark; true"
    started=$!
    wait_until is_running || check "start before SIG$signal" running "not running"
    kill -"$signal" "$started"
    status=0
    wait "$started" 2>/dev/null || status=$?
    check "status after SIG$signal" $((128 + $(kill -l "$signal"))) "$status"
    wait_until is_gone || check "after SIG$signal" "nothing left" "something left"
done
terminal_in_background bash -c "setsid sleep $mark & disown; exit 5"
status=0
wait $! || status=$?
check "status with a background program" 5 "$status"
wait_until is_gone || check "background programs" "nothing left" "something left"

# --- Many at once -------------------------------------------------------------------------
for i in {1..8}; do
    terminal bash -c "sh -c 'true $i'; tr '\0' '\n' </run/disposable-terminal/commands" |
        grep '^true' >"$scratch/record.$i" &
done
wait
check "eight at once" "$(printf 'true %s\n' {1..8})" "$(cat "$scratch"/record.?)"

# --- Test programs outside ----------------------------------------------------------------
tests=$build/tests/terminal/terminal_tests
status=0
output=$("$tests" 2>&1) || status=$?
check "refusal outside" "1 These tests rewrite system files and stop programs; they run only in a disposable terminal:
    terminal/disposable-terminal $tests" "$status $output"
check "listing outside" "Isolation." "$("$tests" --gtest_list_tests | head -n 1)"

finish
