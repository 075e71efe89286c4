#!/bin/bash
# Whatever happens in a terminal, the machine is as before.
# shellcheck source-path=SCRIPTDIR source=checks.sh
. "${BASH_SOURCE[0]%/*}/checks.sh"

places=(/etc /usr/bin /usr/local/bin /usr/share /var/lib /var/tmp /home /home/root /root /opt /srv
    /mnt /media / /dev /dev/shm /run /tmp "$scratch/own")
mkdir -m 777 "$scratch/own" "$scratch/temporary"
export TMPDIR=$scratch/temporary
echo original >"$scratch/own/file"
probe=disposable-probe-$$

state_of_machine() {
    cat /proc/sys/kernel/hostname /proc/sys/net/ipv4/ip_forward /proc/self/mountinfo
    sha256sum /etc/hosts /etc/passwd /etc/resolv.conf "$scratch/own/file" "$QVTC_RECORDER" 2>&1
    stat -c '%A %u %N' /bin/sh /usr/bin/bash /tmp /mnt /run "$build" "$scratch"/*
    ls -A /mnt /media /srv "$scratch"/*/
}

# shellcheck disable=SC2016 # for the shell in the terminal
# What could do harm if it were to succeed outside changes nothing.
readonly mischief='
    for place in "${@:2}"; do
        mkdir -p "$place" 2>/dev/null
        echo text >"$place/$1" && echo "$place"
    done
    chmod "$(stat -c %a /dev/null)" /dev/null && echo "rights of /dev/null"
    echo "$(</proc/sys/vm/swappiness)" >/proc/sys/vm/swappiness && echo "a setting of the machine"
    echo "#" >>/bin/sh && echo "the recorder"
    echo changed >file
    rm -f /etc/passwd /usr/bin/bash /bin/sh
    rm -rf /home /var/lib
    hostname other
    echo 1 >/proc/sys/net/ipv4/ip_forward
    mount -t tmpfs tmpfs /mnt
    mkdir /run/x /media/x /tmp/x 2>/dev/null
    for process in /proc/[0-9]*; do
        [[ ${process##*/} == $$ ]] || kill -TERM "${process##*/}"
    done
    exit 0'

before=$(state_of_machine)
cd "$scratch/own"
wrote=$(terminal bash -c "$mischief" bash "$probe" "${places[@]}" 2>/dev/null)

# Without root, what belongs to others cannot be written; what it can, it must.
expected=("${places[@]}")
if [[ $mode == user ]]; then
    expected=()
    for place in "${places[@]}"; do
        case $place in
        /usr/share | /opt) ;;
        *) expected+=("$place") ;;
        esac
    done
fi
check "places written to" "$(printf '%s\n' "${expected[@]}")" "$wrote"
for place in "${places[@]}"; do
    [[ ! -e $place/$probe ]] || check "$place" "no file" "the file $probe"
done
check "the machine" "$before" "$(state_of_machine)"

finish
