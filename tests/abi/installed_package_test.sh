#!/bin/bash
# Whoever has only the installed package can build against it, in C and C++, with
# pkg-config and with CMake, and run what was built.
# Usage: installed_package_test.sh BUILD_TREE DISPOSABLE_TERMINAL C_COMPILER CXX_COMPILER
set -euo pipefail

readonly build=$1 terminal=$2 c_compiler=$3 cxx_compiler=$4
here=$(dirname "$(realpath "$0")")
readonly here
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
cd "$work"

cmake --install "$build" --prefix "$work/package" >install.log
libdir=$(dirname "$(find package -name qvtcapi.pc)")/..
PKG_CONFIG_PATH=$(realpath "$libdir/pkgconfig")
LD_LIBRARY_PATH=$(realpath "$libdir")
export PKG_CONFIG_PATH LD_LIBRARY_PATH

readonly strict=(-Wall -Wextra -Wpedantic -Werror)
read -r -a flags <<<"$(pkg-config --cflags --libs qvtcapi json-c)"

"$c_compiler" -std=c11 "${strict[@]}" "$here/front_end_in_c.c" -o in_c "${flags[@]}"
"$c_compiler" -std=c11 "${strict[@]}" "$here/../../examples/front_end.c" -o example "${flags[@]}"
echo '#include <qvtcapi/qvtcapi.h>' >alone.c
"$c_compiler" -std=c11 "${strict[@]}" -I package/include -fsyntax-only alone.c
"$cxx_compiler" -std=c++20 "${strict[@]}" -I package/include -fsyntax-only -x c++ alone.c

cp "$here/front_end_in_c.c" program.c
cat >CMakeLists.txt <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(front_end LANGUAGES C)
find_package(qvtcapi 0.1 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(JSONC REQUIRED IMPORTED_TARGET json-c)
add_executable(front_end program.c)
target_link_libraries(front_end PRIVATE qvtcapi::qvtcapi PkgConfig::JSONC)
CMAKE
cmake -S . -B by_cmake -DCMAKE_PREFIX_PATH="$work/package" -DCMAKE_C_COMPILER="$c_compiler" >cmake.log
cmake --build by_cmake >>cmake.log

for program in in_c by_cmake/front_end; do
    "$terminal" --env LD_LIBRARY_PATH="$LD_LIBRARY_PATH" -- "$work/$program" >output.log 2>&1 ||
        { cat output.log && exit 1; }
done
{ ./example 2>&1 || true; } | grep '^Usage: front_end '
"$terminal" --env LD_LIBRARY_PATH="$LD_LIBRARY_PATH" -- "$work/package/bin/qvtcctl" --version
echo "built and run with the installed package"
