// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "HandOutput.h"
#include "StudioEngine.h"
#include "TestSounds.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <array>

namespace lantern::test {

// The engine, with an output that takes frames when the test says.
class EngineByHand : public testing::Test {
protected:
    EngineByHand()
    {
        static int argumentCount = 1;
        static std::array<char, 5> name = {'t', 'e', 's', 't', 0};
        static std::array<char*, 2> arguments = {name.data(), nullptr};
        static QCoreApplication application(argumentCount, arguments.data());
    }

    // A second of it is 8000 frames.
    void Load()
    {
        ASSERT_TRUE(m_engine.EngineInit());
        ASSERT_EQ(m_engine.LoadMemory(m_image), 0);
    }
    void Play(int frames) { ASSERT_EQ(std::ssize(m_output.Take(frames)), 2 * frames); }
    // What was rendered before a change, and the 80 frames that fade over to what comes.
    void PlayOver()
    {
        std::this_thread::sleep_for(300ms);
        Play(240 + 80);
    }
    bool Becomes(SoundStatus status)
    {
        return Eventually([&] {
            QCoreApplication::processEvents();
            return m_engine.GetSoundStatus() == status;
        });
    }

    const Pcm m_sound = MakeTicks(8000, 2, 16'000);
    const Bytes m_image = WavImage(m_sound);
    HandOutput& m_output = *new HandOutput;
    StudioEngine m_engine{std::unique_ptr<AudioOutput>(&m_output)};
};

} // namespace lantern::test
