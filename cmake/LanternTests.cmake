# SPDX-License-Identifier: GPL-3.0-or-later
# What every test program of this project has in common.

find_program(PYTHON3 python3 REQUIRED)
set(LANTERN_TEST_SUPPORT ${PROJECT_SOURCE_DIR}/tests/support)
# Where the programs of all trees wait for each other: those in build/ run on one machine.
set(LANTERN_TEST_MACHINE ${CMAKE_BINARY_DIR})
cmake_path(IS_PREFIX PROJECT_SOURCE_DIR ${CMAKE_BINARY_DIR} NORMALIZE isInside)
if(isInside)
    cmake_path(GET CMAKE_BINARY_DIR PARENT_PATH LANTERN_TEST_MACHINE)
endif()

# What most tests include, compiled once: for those that show widgets, and for the others.
# Tests are not optimised: what they test is, and it is compiling them that takes the time.
set(LANTERN_TEST_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-O0>)
foreach(kind Core Widgets)
    set(owner lantern_test_headers_${kind})
    add_library(${owner} OBJECT ${LANTERN_TEST_SUPPORT}/NoTest.cpp)
    target_link_libraries(${owner} PRIVATE Qt6::${kind} GTest::gmock lantern_options)
    target_compile_options(${owner} PRIVATE ${LANTERN_TEST_OPTIONS})
    set_target_properties(${owner} PROPERTIES LANTERN_IS_TEST TRUE)
    target_precompile_headers(${owner} PRIVATE ${LANTERN_TEST_SUPPORT}/${kind}TestHeaders.h)
endforeach()

# lantern_test_options(NAME KIND): compiles a target as tests are, with the headers of that kind.
function(lantern_test_options name kind)
    target_link_libraries(${name} PRIVATE Qt6::Core GTest::gmock lantern_options)
    target_compile_options(${name} PRIVATE ${LANTERN_TEST_OPTIONS})
    set_target_properties(${name} PROPERTIES LANTERN_IS_TEST TRUE)
    target_precompile_headers(${name} REUSE_FROM lantern_test_headers_${kind})
endfunction()

# lantern_test(NAME [WIDGETS] [ALONE] SOURCES file... LINK library... [MAIN file] [SCREENS file]
#              [CASE_SECONDS n] [LONG filter] [MEASURED filter] [LABELS label...])
# One program of GoogleTest cases, and one test for ctest, which runs them all in one process, and
# each failed one once more. The journeys, which take long, tell each case, and so do those ALONE.
# Under sanitizers its name has a prefix, so that one ctest run can hold both trees.
#   WIDGETS       shows widgets: its main function makes the application
#   MAIN          has its main function in this file
#   SCREENS       the screens that the application finds, instead of one
#   ALONE         measures moments: nothing runs beside it, and a case that a machine which stands
#                 still spoils again and again is skipped
#   CASE_SECONDS  after so long a case is taken to hang
#   LONG          cases that take long: a test of their own with the suffix .long and that label
#   MEASURED      cases that measure only: left out under sanitizers, which slow the program
function(lantern_test name)
    cmake_parse_arguments(arg "WIDGETS;ALONE" "MAIN;SCREENS;CASE_SECONDS;LONG;MEASURED"
        "SOURCES;LINK;LABELS" ${ARGN})
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "lantern_test(${name}): what is \"${arg_UNPARSED_ARGUMENTS}\"?")
    endif()
    add_executable(${name} ${arg_SOURCES})
    lantern_unity(${name} ${LANTERN_UNITY_TESTS})
    target_link_libraries(${name} PRIVATE ${arg_LINK})
    if(arg_WIDGETS)
        if(NOT arg_MAIN)
            set(arg_MAIN ${LANTERN_TEST_SUPPORT}/WidgetsMain.cpp)
        endif()
        target_sources(${name} PRIVATE ${arg_MAIN})
        lantern_test_options(${name} Widgets)
    else()
        target_link_libraries(${name} PRIVATE GTest::gmock_main)
        lantern_test_options(${name} Core)
    endif()
    if(arg_SCREENS)
        target_compile_definitions(${name} PRIVATE LANTERN_SCREENS="${arg_SCREENS}")
    endif()
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    set(left_out ${arg_LONG})
    if(LANTERN_SANITIZE)
        list(APPEND left_out ${arg_MEASURED})
    endif()
    list(JOIN left_out ":" left_out)
    set(short "*")
    if(left_out)
        set(short "*-${left_out}")
    endif()
    if(arg_LONG)
        lantern_add_cases(${name} ".long" "${arg_LONG}" "${arg_CASE_SECONDS}" "${arg_ALONE}"
            "${arg_LABELS};long")
    endif()
    lantern_add_cases(${name} "" "${short}" "${arg_CASE_SECONDS}" "${arg_ALONE}" "${arg_LABELS}")
endfunction()

# lantern_test_at_ratios(NAME FILTER ratio...)
# The cases of a test program that fit the filter, once more on screens with that many device
# pixels to each pixel of the layout. The code is the same: sanitizers look at it once.
function(lantern_test_at_ratios name filter)
    if(LANTERN_SANITIZE)
        return()
    endif()
    foreach(ratio ${ARGN})
        lantern_add_cases(${name} ".at${ratio}x" "${filter}" "" FALSE "")
        set_tests_properties(${test} PROPERTIES
            ENVIRONMENT_MODIFICATION "QT_SCALE_FACTOR=set:${ratio}")
    endforeach()
endfunction()

# One test of ctest; its name is in `test` afterwards.
function(lantern_add_cases program suffix filter case_seconds is_alone labels)
    set(test ${program}${suffix})
    if(LANTERN_SANITIZE)
        set(test sanitized.${test})
    endif()
    set(options "--filter=${filter}")
    if(case_seconds)
        list(APPEND options --limit ${case_seconds})
    endif()
    if(is_alone OR "e2e" IN_LIST labels)
        list(APPEND options --show-all)
    endif()
    if(is_alone)
        list(APPEND options --moments)
    endif()
    list(APPEND options --machine ${LANTERN_TEST_MACHINE}/machine)
    add_test(NAME ${test}
        COMMAND ${PYTHON3} ${LANTERN_TEST_SUPPORT}/run_cases.py ${options} $<TARGET_FILE:${program}>)
    # Under sanitizers, where nothing is measured, it may well be slow.
    set(is_serial ${is_alone})
    if(LANTERN_SANITIZE)
        set(is_serial FALSE)
    endif()
    # Each case has a limit of its own. That of ctest is for a runner that hangs itself.
    set_tests_properties(${test} PROPERTIES TIMEOUT 1800 ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
        RUN_SERIAL "${is_serial}" LABELS "${labels}")
    set(test ${test} PARENT_SCOPE)
endfunction()
