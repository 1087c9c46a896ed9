// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenGuard.h"

#include <utility>

namespace lantern {

ScreenGuard::ScreenGuard(std::vector<std::unique_ptr<ScreenWay>> ways) : m_ways(std::move(ways))
{
    for (std::size_t way = 0; way < m_ways.size(); ++way)
        m_ways[way]->Changed = [this, way] { TryAgain(way); };
}

ScreenGuard::~ScreenGuard()
{
    Follow(false);
}

void ScreenGuard::Follow(bool isWanted)
{
    if (std::exchange(m_isWanted, isWanted) == isWanted)
        return;
    if (isWanted)
        Try(0);
    else if (m_tried < m_ways.size())
        m_ways[m_tried]->GiveBack();
}

void ScreenGuard::Try(std::size_t way)
{
    m_tried = way;
    if (way == m_ways.size())
        return;
    m_ways[way]->Keep([this, way](bool isKept) {
        if (!isKept)
            Try(way + 1);
    });
}

void ScreenGuard::TryAgain(std::size_t way)
{
    if (!m_isWanted || way > m_tried)
        return;
    Follow(false);
    Follow(true);
}

} // namespace lantern
