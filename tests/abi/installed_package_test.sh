#!/bin/bash
# What the README says of installing holds: in a terminal, the library is installed into /usr/local,
# and whoever has only that can build front-ends in C and C++, with pkg-config and with CMake, and
# run them.
# Usage: installed_package_test.sh BUILD-DIRECTORY DISPOSABLE-TERMINAL C-COMPILER CXX-COMPILER
set -euo pipefail

if [[ ! -e /run/disposable-terminal/about ]]; then
    cd "$1" # a terminal always has the directory that it is started from
    exec "$2" -- bash "$0" "$@"
fi

readonly build=$1 c_compiler=$3 cxx_compiler=$4
project=$(cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)
readonly project
readonly strict=(-std=c11 -Wall -Wextra -Wpedantic -Werror)

check() { # WHAT EXPECTED ACTUAL
    if [[ $2 != "$3" ]]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- got\n%s\n' "$1" "$2" "$3" >&2
        exit 1
    fi
}

run() { # COMMAND...: quiet unless it fails
    "$@" >/tmp/output 2>&1 || { cat /tmp/output >&2 && exit 1; }
}

readme_block() { # LANGUAGE: of the README, the block of it
    sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d; p}" "$project/README.md"
}

files_in() { # DIRECTORY PATTERN [EXCLUDED]
    find "$1" -type f -name "$2" ! -name "${3:-}" -printf '%f\n' | LC_ALL=C sort
}

# --- The installation ---------------------------------------------------------------------

# Nothing of an earlier one; without root, these are links to what cannot be written to.
rm -rf /usr/local/{include,lib,share}
cmake --install "$build" --prefix /usr/local >/dev/null
check "a tool before ldconfig" "qvtcctl 0" "$(qvtcctl --version | cut -d . -f 1)"
ldconfig

check "headers" "$(files_in "$project/include" '*.h')" "$(files_in /usr/local/include '*.h')"
check "manuals" "$(files_in "$project/tools" '*.1')" "$(files_in /usr/local/share/man '*.1')"
check "documents" "$({
    printf '%s\n' CHANGELOG.md LICENSE front_end.c
    files_in "$project/docs" '*.md' disposable-terminal.md
} | LC_ALL=C sort)" "$(files_in /usr/local/share/doc '*')"

# --- Front-ends ---------------------------------------------------------------------------

mkdir /tmp/work && cd /tmp/work
read -r -a flags <<<"$(pkg-config --cflags --libs qvtcapi json-c)"

run "$c_compiler" "${strict[@]}" "$project/tests/abi/front_end_in_c.c" -o in_c "${flags[@]}"
run "$c_compiler" "${strict[@]}" /usr/local/share/doc/qvtcapi/examples/front_end.c -o example \
    "${flags[@]}"
for header in /usr/local/include/qvtcapi/*.h; do
    printf '#include <qvtcapi/%s>\n' "${header##*/}" >alone.c
    run "$c_compiler" "${strict[@]}" -fsyntax-only alone.c
    run "$cxx_compiler" -std=c++20 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ alone.c
done
run ./in_c
check "the example" "Usage: front_end HOST[:PORT] [USER]" "$(./example 2>&1 | head -n 1)"

# The README's own, in both ways that it shows.
readme_block c >front_end.c
run "$c_compiler" "${strict[@]}" front_end.c -o by_hand "${flags[@]}"
{
    printf 'cmake_minimum_required(VERSION 3.25)\nproject(front_end LANGUAGES C)\n'
    readme_block cmake
} >CMakeLists.txt
run cmake -S . -B by_cmake -DCMAKE_C_COMPILER="$c_compiler"
run cmake --build by_cmake

# A client that says why it cannot connect. The library prints traces of its own on a front-end's
# standard output, before the last line.
readonly reason='connect: No route to host'
printf '#!/bin/bash\necho "[ERROR] %s"\n' "$reason" >/usr/local/bin/xfreerdp
chmod 755 /usr/local/bin/xfreerdp
for program in ./by_hand by_cmake/front_end; do
    rm -f /home/root/vpclientData.xml
    check "$program" "not connected; the reason in base64: $(printf %s "$reason" | base64 -w 0)" \
        "$("$program" 2>/dev/null | tail -n 1)"
done
