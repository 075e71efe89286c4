# Tests that run in the disposable terminal.
#
#   qvtc_add_terminal_tests(core_tests text_test.cpp base64_test.cpp
#       LIBS qvtcapi_archive        what to link besides GoogleTest and the test support
#       [LABEL core]                the label for "ctest -L"; default: the name without "_tests"
#       [TIMEOUT 60]                seconds for each test
#       [IMAGE DIRECTORY...]        trees that are copied over the terminal's root
#       [SHARE DIRECTORY...])       directories whose real contents the tests may change
#
# makes a program and registers each of its tests; ctest runs each in a terminal of its own. The
# list of tests is asked for when ctest starts, so that building needs no rights.
#
#   qvtc_add_script_test(NAME script.sh [ARGUMENT...])
#
# registers a bash script that runs outside, for what only the machine can see.
include_guard(GLOBAL)
include(GoogleTest)

set(QVTC_TERMINAL ${PROJECT_SOURCE_DIR}/terminal/disposable-terminal)

function(qvtc_add_terminal_tests name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL;TIMEOUT" "LIBS;IMAGE;SHARE")
    if(NOT arg_LABEL)
        string(REGEX REPLACE "_tests$" "" arg_LABEL ${name})
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()

    add_executable(${name} ${arg_UNPARSED_ARGUMENTS} $<TARGET_OBJECTS:qvtc_test_main>)
    target_link_libraries(${name} PRIVATE ${arg_LIBS} qvtc_test_support)
    add_dependencies(${name} recorder_shell stand_in)

    set(launcher ${QVTC_TERMINAL} --recorder $<TARGET_FILE:recorder_shell>
        --golden ${PROJECT_SOURCE_DIR}/tests/golden)
    foreach(directory ${arg_IMAGE})
        list(APPEND launcher --image ${directory})
    endforeach()
    foreach(directory ${arg_SHARE})
        list(APPEND launcher --share ${directory})
    endforeach()
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${launcher};--")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
endfunction()

function(qvtc_add_script_test name script)
    add_test(NAME ${name} COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/${script} ${ARGN})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 SKIP_RETURN_CODE 77)
endfunction()
