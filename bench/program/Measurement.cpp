// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measurement.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace lantern::bench {

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

Measurement Compare(std::string name, std::string unit, std::string against, const Effort& effort,
                    const std::function<double()>& ours, const std::function<double()>& yardstick)
{
    std::vector<double> mine;
    std::vector<double> theirs;
    for (int round = 0; round < effort.rounds; ++round) {
        mine.push_back(ours());
        theirs.push_back(yardstick());
    }
    std::cerr << name << '\n';
    return {std::move(name), Median(mine), Median(theirs), std::move(unit), std::move(against)};
}

void Print(const std::vector<Measurement>& measurements)
{
    std::puts("{\n  \"benchmarks\": [");
    for (std::size_t i = 0; i < measurements.size(); ++i) {
        const Measurement& measurement = measurements[i];
        std::printf("    {\"name\": \"%s\", \"ours\": %.3f, \"yardstick\": %.3f, \"unit\": \"%s\", "
                    "\"against\": \"%s\", \"ratio\": %.3f}%s\n",
                    measurement.name.c_str(), measurement.ours, measurement.yardstick,
                    measurement.unit.c_str(), measurement.against.c_str(),
                    measurement.ours / measurement.yardstick,
                    i + 1 < measurements.size() ? "," : "");
    }
    std::puts("  ]\n}");
}

} // namespace lantern::bench
