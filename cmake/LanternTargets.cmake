# SPDX-License-Identifier: GPL-3.0-or-later
# What every target of this project has in common.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Looking for classes with signals of their own costs time at each target, and few have them: those
# that have switch CMAKE_AUTOMOC on in their folder.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # It keeps what is compiled with a precompiled header only if it is told that this is wanted.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

# Warnings, sanitizers and definitions: linked by every target below.
add_library(lantern_options INTERFACE)
target_compile_options(lantern_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    -Wcast-align -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2
    -Wimplicit-fallthrough -Werror)
target_compile_definitions(lantern_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # The compiler cleans its memory seldom: there is enough of it, and that took a fifth of the time.
    target_compile_options(lantern_options INTERFACE
        --param=ggc-min-expand=200 --param=ggc-min-heapsize=524288)
endif()
if(LANTERN_SANITIZE)
    target_compile_options(lantern_options INTERFACE
        -fsanitize=${LANTERN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        # Of the tests' own code, what it does to memory is enough: the rest takes most of the time.
        $<$<BOOL:$<TARGET_PROPERTY:LANTERN_IS_TEST>>:-fno-sanitize=undefined>)
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
    lantern_unity(${name} ${LANTERN_UNITY_LIBRARIES})
endfunction()

# lantern_unity(NAME IS_ON): compiles five of a target's files at a time. The X library's headers
# define words such as None and Bool, so a file that includes one is compiled by itself.
function(lantern_unity name is_on)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${is_on} UNITY_BUILD_BATCH_SIZE 5)
    get_target_property(sources ${name} SOURCES)
    foreach(source ${sources})
        cmake_path(ABSOLUTE_PATH source)
        if(EXISTS ${source})
            file(STRINGS ${source} includes REGEX "^#include <X11/")
            if(includes)
                set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
            endif()
        endif()
    endforeach()
endfunction()

# lantern_program(NAME SOURCES file... LINK library...)
function(lantern_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK} lantern_options)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# Adds each folder that has a CMakeLists.txt.
function(lantern_add_folders)
    foreach(folder ${ARGN})
        if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt)
            add_subdirectory(${folder})
        endif()
    endforeach()
endfunction()
