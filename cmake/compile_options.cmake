# What every target of this project is compiled and linked with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

include(CheckPIESupported)
check_pie_supported()

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()
set(CMAKE_C_FLAGS_RELWITHDEBINFO "-O2 -g -DNDEBUG")
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g -DNDEBUG")

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_compile_definitions(_GNU_SOURCE)
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wformat=2
    -Wcast-qual -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
if(QVTC_WERROR)
    add_compile_options(-Werror)
endif()

set(QVTC_SANITIZER_FLAGS "")
if(QVTC_SANITIZE)
    set(QVTC_SANITIZER_FLAGS -fsanitize=${QVTC_SANITIZE})
    set(link_flags "")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND QVTC_SANITIZE MATCHES "address")
        # One run time for the library and for the program that loads it, as g++ has it.
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-runtime-dir
            OUTPUT_VARIABLE directory OUTPUT_STRIP_TRAILING_WHITESPACE)
        list(APPEND QVTC_SANITIZER_FLAGS -shared-libasan)
        set(link_flags -Wl,-rpath,${directory})
    endif()
    add_compile_options(${QVTC_SANITIZER_FLAGS} -fno-omit-frame-pointer)
    list(APPEND QVTC_SANITIZER_FLAGS ${link_flags})
    add_link_options(${QVTC_SANITIZER_FLAGS})
    if(QVTC_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
else()
    add_compile_options(-fstack-protector-strong -fstack-clash-protection -fcf-protection)
    if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
        add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
