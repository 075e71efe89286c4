#!/bin/bash
# The library exports just the names of a list: the ABI changes only on purpose.
# Usage: exported_symbols.sh LIBRARY LIST
set -euo pipefail

exported=$(nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort)
if ! diff -u --label "expected ($2)" --label "exported by ${1##*/}" "$2" - <<<"$exported"; then
    echo "Lines with + are exported and not listed; lines with - are listed and not exported."
    exit 1
fi
echo "$(wc -l <"$2") exported names"
