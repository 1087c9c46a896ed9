# SPDX-License-Identifier: GPL-3.0-or-later
# What every test program of this project has in common.
include(LanternShares)

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

# All programs of tests. Each tree has names of its own for its tests, so that one ctest run can hold
# them all, and a test that builds it, should scripts/test have made one.
add_custom_target(test_programs)
set(LANTERN_TESTS_PREFIX "")
set(LANTERN_TESTS_FIXTURE "")
if(LANTERN_SANITIZE)
    set(LANTERN_TESTS_PREFIX sanitized.)
    set(LANTERN_TESTS_FIXTURE asan)
    if(LANTERN_SANITIZE STREQUAL "thread")
        set(LANTERN_TESTS_PREFIX threads.)
        set(LANTERN_TESTS_FIXTURE tsan)
    endif()
endif()

# lantern_test(NAME [WIDGETS] [ALONE] [BEHIND] [THREADS] SOURCES file... LINK library...
#              [MAIN file] [SCREENS file] [CASE_SECONDS n] [LONG filter] [MEASURED filter]
#              [LABELS label...])
# One program of GoogleTest cases, and one test for ctest, which runs them all in one process, and
# each failed one once more. The journeys, which take long, tell each case, and so do those ALONE.
#   WIDGETS       shows widgets: its main function makes the application
#   MAIN          has its main function in this file
#   SCREENS       the screens that the application finds, instead of one
#   ALONE         measures moments: nothing runs beside it, and a case that a machine which stands
#                 still spoils again and again is skipped
#   BEHIND        only computes, and waits for nothing: under sanitizers it may run behind all others
#   THREADS       of the thread sanitizer's tree only such programs are tests
#   CASE_SECONDS  after so long a case is taken to hang
#   LONG          cases that take long: a test of their own with the suffix .long and that label,
#                 left out under sanitizers, which slow the program
#   MEASURED      cases that measure only: left out under sanitizers, too
function(lantern_test name)
    cmake_parse_arguments(arg "WIDGETS;ALONE;BEHIND;THREADS" "MAIN;SCREENS;CASE_SECONDS;LONG;MEASURED"
        "SOURCES;LINK;LABELS" ${ARGN})
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "lantern_test(${name}): what is \"${arg_UNPARSED_ARGUMENTS}\"?")
    endif()
    add_executable(${name} ${arg_SOURCES})
    if(LANTERN_SANITIZE STREQUAL "thread" AND NOT arg_THREADS)
        set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL TRUE)
        set(is_tested FALSE)
    else()
        add_dependencies(test_programs ${name})
        set(is_tested TRUE)
    endif()
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
    if(NOT is_tested)
        return()
    endif()
    set(left_out ${arg_LONG})
    set(how "")
    if("e2e" IN_LIST arg_LABELS)
        set(how JOURNEY)
    endif()
    if(arg_ALONE)
        set(how ALONE)
    endif()
    if(LANTERN_SANITIZE)
        list(APPEND left_out ${arg_MEASURED})
        if(arg_BEHIND)
            set(how BEHIND)
        endif()
    endif()
    list(JOIN left_out ":" left_out)
    set(short "*")
    if(left_out)
        set(short "*-${left_out}")
    endif()
    if(arg_LONG AND NOT LANTERN_SANITIZE)
        lantern_add_cases(${name} ".long" "${arg_LONG}" "${arg_CASE_SECONDS}" "${how}"
            "${arg_LABELS};long")
    endif()
    lantern_add_cases(${name} "" "${short}" "${arg_CASE_SECONDS}" "${how}" "${arg_LABELS}")
endfunction()

# lantern_test_at_ratios(NAME FILTER ratio...)
# The cases of a test program that fit the filter, once more on screens with that many device
# pixels to each pixel of the layout. The code is the same: sanitizers look at it once.
function(lantern_test_at_ratios name filter)
    if(LANTERN_SANITIZE)
        return()
    endif()
    foreach(ratio ${ARGN})
        lantern_add_cases(${name} ".at${ratio}x" "${filter}" "" "" "")
        set_tests_properties(${test} PROPERTIES
            ENVIRONMENT_MODIFICATION "QT_SCALE_FACTOR=set:${ratio}")
    endforeach()
endfunction()

# One test of ctest; its name is in `test` afterwards. It runs ALONE, as a JOURNEY, BEHIND all
# others, or as any other.
function(lantern_add_cases program suffix filter case_seconds how labels)
    set(test ${LANTERN_TESTS_PREFIX}${program}${suffix})
    set(options "--filter=${filter}")
    # Under sanitizers, where nothing is measured, it may well be slow.
    if(LANTERN_SANITIZE AND how STREQUAL "ALONE")
        set(how "")
    endif()
    set(shares ${LANTERN_SHARES})
    set(cost 0)
    if(how STREQUAL "ALONE")
        list(APPEND options --moments)
        set(shares ${LANTERN_SHARES_ALONE})
        set(cost ${LANTERN_COST_ALONE})
    elseif(how STREQUAL "JOURNEY")
        set(shares ${LANTERN_SHARES_JOURNEY})
    elseif(how STREQUAL "BEHIND")
        set(case_seconds 600)
        list(APPEND options --behind)
        set(shares ${LANTERN_SHARES_BEHIND})
    endif()
    if(case_seconds)
        list(APPEND options --limit ${case_seconds})
    endif()
    if(how MATCHES "ALONE|JOURNEY" OR "e2e" IN_LIST labels)
        list(APPEND options --show-all)
    endif()
    list(APPEND options --machine ${LANTERN_TEST_MACHINE}/machine)
    add_test(NAME ${test}
        COMMAND ${PYTHON3} ${LANTERN_TEST_SUPPORT}/run_cases.py ${options} $<TARGET_FILE:${program}>)
    # Each case has a limit of its own. That of ctest is for a runner that hangs itself.
    set_tests_properties(${test} PROPERTIES TIMEOUT 1800 ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
        FIXTURES_REQUIRED "${LANTERN_TESTS_FIXTURE}" PROCESSORS ${shares} COST ${cost}
        LABELS "${labels}")
    if(how STREQUAL "BEHIND")
        lantern_take_turns(${test})
    endif()
    set(test ${test} PARENT_SCOPE)
endfunction()
