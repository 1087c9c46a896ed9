// SPDX-License-Identifier: GPL-3.0-or-later
// What most tests include, compiled once for all of them. Each still includes what it uses.
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <thread>
#include <vector>
