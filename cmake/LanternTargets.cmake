# SPDX-License-Identifier: GPL-3.0-or-later
# What every target of this project has in common.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# Warnings, sanitizers and definitions: linked by every target below.
add_library(lantern_options INTERFACE)
target_compile_options(lantern_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    -Wcast-align -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2
    -Wimplicit-fallthrough -Werror)
target_compile_definitions(lantern_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
if(LANTERN_SANITIZE)
    target_compile_options(lantern_options INTERFACE
        -fsanitize=${LANTERN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(lantern_options INTERFACE -fsanitize=${LANTERN_SANITIZE})
endif()
if(LANTERN_FUZZ)
    # Coverage feedback in every library; the fuzz targets themselves add the fuzzer's main.
    target_compile_options(lantern_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# lantern_library(NAME SOURCES file... LINK public... [PRIVATE_LINK private...])
# A static library whose folder is its include root. What it links to is what it may include.
function(lantern_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK} lantern_options)
endfunction()

# lantern_program(NAME SOURCES file... LINK library...)
function(lantern_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK} lantern_options)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# lantern_test(NAME SOURCES file... LINK library... [PROPERTIES name value...])
# One program of GoogleTest cases, each a test of its own for ctest with the properties given.
# Under sanitizers their names have a prefix, so that one ctest run can hold both trees.
function(lantern_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;PROPERTIES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK} GTest::gmock_main lantern_options)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    set(prefix "")
    if(LANTERN_SANITIZE)
        set(prefix "sanitized.")
    endif()
    # A list cannot be a property's value here, hence two properties for two variables.
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        TEST_PREFIX "${prefix}"
        PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
            ENVIRONMENT_MODIFICATION "QT_FONT_DPI=set:96" ${arg_PROPERTIES})
endfunction()

# lantern_test_at_ratios(NAME FILTER ratio...)
# The cases of a test program that fit the filter, once more on screens with that many device
# pixels to each pixel of the layout.
function(lantern_test_at_ratios name filter)
    set(prefix "")
    if(LANTERN_SANITIZE)
        set(prefix "sanitized.")
    endif()
    foreach(ratio ${ARGN})
        gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
            TEST_PREFIX "${prefix}" TEST_SUFFIX ".at${ratio}x" TEST_FILTER "${filter}"
            TEST_LIST ${name}_at_${ratio}x
            PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
                ENVIRONMENT_MODIFICATION "QT_SCALE_FACTOR=set:${ratio}")
    endforeach()
endfunction()

# Adds each folder that has a CMakeLists.txt.
function(lantern_add_folders)
    foreach(folder ${ARGN})
        if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt)
            add_subdirectory(${folder})
        endif()
    endforeach()
endfunction()
