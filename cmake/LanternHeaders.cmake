# SPDX-License-Identifier: GPL-3.0-or-later
# Reading the toolkit's headers is most of the work of compiling what shows widgets: here they are
# compiled once. A file still includes all that it uses.

set(LANTERN_HEADERS ${CMAKE_CURRENT_LIST_DIR}/headers)
add_library(lantern_headers OBJECT ${LANTERN_HEADERS}/NoCode.cpp)
target_link_libraries(lantern_headers PRIVATE Qt6::Widgets lantern_options)
target_precompile_headers(lantern_headers PRIVATE ${LANTERN_HEADERS}/WidgetHeaders.h)

# lantern_widgets(target...): these show widgets.
function(lantern_widgets)
    foreach(name ${ARGN})
        target_precompile_headers(${name} REUSE_FROM lantern_headers)
    endforeach()
endfunction()
