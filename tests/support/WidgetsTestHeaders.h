// SPDX-License-Identifier: GPL-3.0-or-later
// What most tests of widgets include, compiled once for all of them.
#pragma once

#include "CoreTestHeaders.h"

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>
