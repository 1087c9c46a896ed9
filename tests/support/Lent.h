// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <tuple>
#include <utility>

namespace lantern::test {

// A server for one case, which stands on for the next: starting one takes longer than many a case.
// Which one it is, its arguments tell. It is handed on only by a case that passed, and only if it
// says itself, by MakeReady, that it is as a new one would be; otherwise a new one is started.
template <typename Server, typename... Arguments>
std::shared_ptr<Server> Lend(const Arguments&... arguments)
{
    static std::map<std::tuple<Arguments...>, std::unique_ptr<Server>> standing;
    auto& place = standing[std::tuple(arguments...)];
    std::unique_ptr<Server> server = std::exchange(place, nullptr);
    if (!server || !server->MakeReady()) {
        server.reset();
        server = std::make_unique<Server>(arguments...);
    }
    return {server.release(), [&place](Server* returned) {
                std::unique_ptr<Server> owned(returned);
                if (!testing::Test::HasFailure())
                    place = std::move(owned);
            }};
}

} // namespace lantern::test
