// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Moment.h"

#include <functional>
#include <string>
#include <vector>

namespace lantern::bench {

struct Effort {
    int rounds = 3;
    test::Clock::duration warmUp = std::chrono::seconds(2);
    test::Clock::duration window = std::chrono::seconds(10);
};

struct Measurement {
    std::string name;
    double ours = 0.0;
    double yardstick = 0.0;
    std::string unit;
    std::string against;
};

double Median(std::vector<double> values);

// The median of the rounds of two measurements that take turns, so that a busy moment of the
// machine meets both.
Measurement Compare(std::string name, std::string unit, std::string against, const Effort& effort,
                    const std::function<double()>& ours, const std::function<double()>& yardstick);

// As the other benchmarks print theirs: a JSON object with one record a measurement.
void Print(const std::vector<Measurement>& measurements);

} // namespace lantern::bench
