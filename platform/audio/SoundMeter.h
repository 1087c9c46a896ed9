// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LoudnessMeter.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <memory>
#include <thread>

namespace lantern {

// The meter: a thread for each measurement. One that is no longer wanted is told so, and ends by
// itself: what it waits for may be a disk that hangs.
class SoundMeter final : public LoudnessMeter {
public:
    // An estimate is made if after so long it shows that the whole will not be measured in time.
    struct Times {
        std::chrono::milliseconds before{350};
        std::chrono::milliseconds wanted{700};
    };

    SoundMeter() = default;
    explicit SoundMeter(Times times) : m_times(times) {}
    ~SoundMeter() override;

    void Measure(std::vector<Sound> sounds, Measured measured) override;
    void Cancel() override;

private:
    struct Work;
    static void Run(Work& work);

    Times m_times;
    std::uint64_t m_serial = 0; // of the latest measurement
    QObject m_context;          // what is still on its way dies with it
    std::shared_ptr<Work> m_work;
    std::thread m_thread;
};

} // namespace lantern
