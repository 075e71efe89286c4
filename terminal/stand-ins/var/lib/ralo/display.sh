#!/bin/bash
# Applies the stored resolution and the display markers to the X server.
set -euo pipefail
resolution=auto
[[ ! -s /var/lib/ralo/res ]] || read -r resolution </var/lib/ralo/res
mapfile -t outputs < <(xrandr | awk '$2 == "connected" { print $1 }')
((${#outputs[@]})) || exit 0
if [[ -e /etc/X11/reverse && ${#outputs[@]} -gt 1 ]]; then
    outputs=("${outputs[1]}" "${outputs[0]}")
fi
mode=(--auto)
[[ $resolution == auto ]] || mode=(--mode "$resolution")
placement=--right-of
[[ ! -e /home/root/hdmi ]] || placement=--below
[[ ! -e /etc/X11/clone ]] || placement=--same-as
command=(xrandr --output "${outputs[0]}" "${mode[@]}")
if ((${#outputs[@]} > 1)); then
    command+=(--output "${outputs[1]}" "${mode[@]}" "$placement" "${outputs[0]}")
fi
"${command[@]}"
