# SPDX-License-Identifier: GPL-3.0-or-later
# Reading the toolkit's headers is most of the work of compiling what shows widgets: here they are
# compiled once. A file still includes all that it uses.

# A library of headers needs a source.
set(LANTERN_NO_CODE ${CMAKE_BINARY_DIR}/NoCode.cpp)
file(CONFIGURE OUTPUT ${LANTERN_NO_CODE} CONTENT "")
add_library(lantern_headers OBJECT ${LANTERN_NO_CODE})
target_link_libraries(lantern_headers PRIVATE Qt6::Widgets lantern_options)
target_precompile_headers(lantern_headers PRIVATE
    <QAccessible> <QApplication> <QImage> <QKeyEvent> <QMouseEvent> <QPainter> <QScreen> <QString>
    <QStringList> <QTimer> <QWidget> <QWindow>
    <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map> <memory> <optional>
    <ranges> <span> <string> <utility> <vector>)

# lantern_widgets(target...): these show widgets.
function(lantern_widgets)
    foreach(name ${ARGN})
        target_precompile_headers(${name} REUSE_FROM lantern_headers)
    endforeach()
endfunction()
