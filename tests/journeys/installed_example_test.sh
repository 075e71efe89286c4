#!/bin/bash
# Installs the library into an empty tree, compiles the example against it as a strict C11 program
# with what pkg-config says, and runs it in a disposable terminal.
# Arguments: BUILD-DIRECTORY COMPILER [FLAG]... # with which the library was compiled and linked
set -euo pipefail

project=$(cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$(mktemp -d)
trap 'rm -rf -- "$tree"' EXIT

cmake --install "$1" --prefix "$tree" >/dev/null
PKG_CONFIG_PATH=$(dirname -- "$(find "$tree" -name qvtcapi.pc)")
export PKG_CONFIG_PATH
# The tree stands for the prefix that the build was configured for; json-c has its own.
read -r -a flags < <(pkg-config --define-variable=prefix="$tree" --cflags --libs qvtcapi)
read -r -a more_flags < <(pkg-config --cflags --libs json-c)
flags+=("${@:3}")
libraries=$(pkg-config --define-variable=prefix="$tree" --variable=libdir qvtcapi)

"$2" -std=c11 -Wall -Wextra -Wpedantic -Werror "$project/examples/front_end.c" \
    -o "$tree/front_end" "${flags[@]}" "${more_flags[@]}" "-Wl,-rpath,$libraries"

# A host name that nothing answers to: the connection is stored and launched, and its end told.
status=0
said=$("$project/terminal/disposable-terminal" --share "$tree" -- \
    "$tree/front_end" nowhere.invalid 2>&1) || status=$?
if ((status != 1)) || [[ $said != *"Launching connection 32 to nowhere.invalid "* ||
    $said != *"Not connected: unkown error!"* ]]; then
    printf 'exit status %d instead of 1, or other words than expected:\n%s\n' "$status" "$said" >&2
    exit 1
fi
