#!/bin/bash
# A root directory that is not a mount point, as a chroot has it. Its mounts are shared with
# others, as systemd shares all mounts of a machine: nothing that the terminal mounts may show there.
# shellcheck disable=SC2016 # texts for other shells
# shellcheck source-path=SCRIPTDIR source=checks.sh
if [[ $EUID == 0 && ${4:-} != inside ]]; then
    # In a chroot there is nothing to set up: every other test of the terminal runs in one.
    if ! unshare -m true 2>/dev/null; then
        echo "the root is no mount point here"
        exit 77
    fi
    exec unshare -m bash "$0" "$1" "$2" root inside
fi
. "${BASH_SOURCE[0]%/*}/checks.sh"

# Everything of this machine, each thing at its place in a directory of a file system.
plain=$scratch/tree/root
mkdir "$scratch/tree"
mount -t tmpfs none "$scratch/tree"
trap 'umount -l "$scratch/tree" && rm -rf "$scratch"' EXIT
mkdir "$plain"
for entry in /*; do
    if [[ -L $entry ]]; then
        cp -P "$entry" "$plain"
    elif [[ -d $entry ]]; then
        mkdir "$plain$entry"
        mount --rbind "$entry" "$plain$entry"
    fi
done
mount --make-rshared "$scratch/tree"
launch=(chroot "$plain")

before=$(</proc/self/mountinfo)
mkdir "$scratch/shared"
(
    status=0
    cd "$scratch/shared"
    chroot "$plain" bash -c 'cd "$1" && shift && exec "$@"' bash "$PWD" \
        "$program" --share "$scratch/shared" bash -c \
        'mount -t tmpfs none /srv; echo changed >/etc/hosts
        pwd >up; until [[ -e go ]]; do sleep 0.02; done; exit 7' || status=$?
    echo "$status" >ended
) &
wait_until test -s "$scratch/shared/up" || check "the terminal" "up" "not up"
during=$(</proc/self/mountinfo)
: >"$scratch/shared/go"
wait
check "working directory" "$scratch/shared" "$(cat "$scratch/shared/up")"
check "exit status" 7 "$(cat "$scratch/shared/ended")"
check "mounts outside" "$before" "$during"

status=0
said=$(terminal --as-user true 2>&1) || status=$?
check "an ordinary user's terminal" \
    "125 disposable-terminal: the kernel gives ordinary users no namespaces of their own in a
chroot. Run it there as root with all capabilities, or outside of the chroot." "$status $said"

umount -l "$plain/proc"
status=0
said=$(terminal true 2>&1) || status=$?
check "without /proc" \
    "125 disposable-terminal: /proc is not mounted here. As root: mount -t proc proc /proc" \
    "$status $said"

finish
