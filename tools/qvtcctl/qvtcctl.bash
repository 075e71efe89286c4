# Completion of qvtcctl(1) for bash. The program itself knows what can be typed next.
_qvtcctl()
{
    local words last offered
    # From the line itself: bash would split FIELD=VALUE at the "=".
    read -ra words <<<"${COMP_LINE:0:COMP_POINT}"
    [[ ${COMP_LINE:0:COMP_POINT} == *[[:space:]] ]] && words+=("")
    last=${words[-1]}
    mapfile -t offered < <("${words[0]}" complete "${words[@]:1}" 2>/dev/null)
    if [[ ${#offered[@]} -eq 1 && ${offered[0]} == *= ]]; then
        compopt -o nospace
    fi
    # bash replaces only what stands behind the "=".
    if [[ $last == *=* ]]; then
        offered=("${offered[@]#*=}")
    fi
    COMPREPLY=("${offered[@]}")
    if [[ ${#offered[@]} -eq 0 && ${words[*]} == *" import "* ]]; then
        compopt -o default
    fi
}
complete -F _qvtcctl qvtcctl
