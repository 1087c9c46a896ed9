// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Hand.h"

#include <QColor>
#include <QImage>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

namespace lantern::test {

// A person's eyes on the screen: pictures of it, and a few points of it watched closely.
class Eyes {
public:
    // A watched point was seen in another colour. The change came between the two moments.
    struct Change {
        std::size_t point = 0;
        QRgb colour = 0;
        Moment lastSeenBefore;
        Moment firstSeen;
    };

    explicit Eyes(const XServer& server);
    ~Eyes();

    QImage Screen();
    QImage Area(const QRect& area);
    QRgb At(Point point);
    // Whether the mouse's pointer shows nothing where it is.
    bool IsPointerBlank() const;

    // Looks at the points about a thousand times a second until StopWatching. The first colour of
    // each point counts as a change, too.
    void Watch(const std::vector<Point>& points);
    std::vector<Change> StopWatching();

private:
    void WatchUntilTold(const std::vector<Point>& points);

    const XServer& m_server;
    XConnection m_connection;
    std::thread m_watcher;
    std::atomic<bool> m_isWatching = false;
    std::vector<Change> m_changes; // the watcher's own while it runs
};

// Where the picture lies on the screen: the smallest rectangle that holds every pixel of the
// colour. Empty if there is none.
QRect BoundsOfColour(const QImage& image, QRgb colour);

// Keeps a picture among the results of the build, for people to look at.
void KeepPicture(const QImage& image, const std::string& name);

} // namespace lantern::test
