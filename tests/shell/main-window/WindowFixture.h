// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FakeAudioEngine.h"
#include "Packets.h"
#include "PlayerSettings.h"
#include "ctlFrame.h"
#include "f101.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace lantern {

// A main window with an engine without sound, and tracks in a folder of their own.
class WindowFixture : public ::testing::Test, private FileErrorHost {
protected:
    WindowFixture() : WindowFixture(std::make_unique<FakeAudioEngine>()) {}

    // Writes a packet file of whole seconds that begins with the packets given.
    QString MakeTrack(std::vector<CdgPacket> packets, int seconds = 10)
    {
        packets.resize(static_cast<std::size_t>(seconds) * kPacketsPerSecond);
        QFile file(folder.filePath(QStringLiteral("track%1.cdg").arg(++m_trackCount)));
        if (!file.open(QIODevice::WriteOnly))
            ADD_FAILURE() << "cannot write a track";
        file.write(reinterpret_cast<const char*>(packets.data()),
                   static_cast<qint64>(packets.size() * kPacketSize));
        return file.fileName();
    }

    // A blue picture with an orange frame around it from the first packet on.
    QString MakeBlueTrack(int seconds = 10)
    {
        return MakeTrack({packets::Colours(false, {0x000, 0x00A, 0xFA0, 0xFFF, 0, 0, 0, 0}),
                          packets::Colours(true, {}), packets::MemoryPreset(1),
                          packets::BorderPreset(2)},
                         seconds);
    }

    // As a start with that track would.
    void Load(const QString& track = {})
    {
        state.Arguments.CommandLine = QStringLiteral("\"lyric-lantern\" ") + track;
        ASSERT_TRUE(window.Load());
        window.show();
        Settle();
    }

    static void Settle()
    {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    void Press(KeyCode key, ShiftBits shift = 0)
    {
        window.DoKeyDown(key, shift);
        window.DoKeyUp(key, shift);
    }

    void Press(char key, ShiftBits shift = 0) { Press(static_cast<KeyCode>(key), shift); }

    template <typename Part = QWidget>
    Part& PartNamed(const char* name)
    {
        return dynamic_cast<Part&>(*window.findChild<QWidget*>(QLatin1String(name)));
    }

    ctlFrame& Message() { return PartNamed<ctlFrame>("SystemText"); }
    QString Status() { return Message().isVisible() ? Message().Caption().trimmed() : QString(); }

    // Whether the pointer shows nothing there.
    static bool IsPointerBlank(const QWidget& widget)
    {
        return widget.cursor().shape() == Qt::BitmapCursor;
    }

    QTemporaryDir folder;
    QStringList messages;
    ProgramState state;
    FakeAudioEngine& engine; // owned by the window
    std::unique_ptr<f101> owner;
    f101& window = *owner; // until a test ends it by its owner

    explicit WindowFixture(std::unique_ptr<FakeAudioEngine> made)
        : state(QFile::encodeName(folder.path()), {}), engine(*made),
          owner(std::make_unique<f101>(StateOfAStart(), std::move(made),
                                       [this](const QString& text) { messages.append(text); }))
    {
        engine.DurationMs = 10000;
    }

private:
    // What the start has filled in by the time of the main window.
    ProgramState& StateOfAStart()
    {
        EXPECT_FALSE(InstanceRunning(state));
        state.UserDataPath = folder.path() + u'/';
        state.SongsFile = state.UserDataPath + QStringLiteral("state/songs.db");
        state.TwipsX = 15;
        state.TwipsY = 15;
        FileErrorHost& host = *this;
        state.Settings.emplace(state.UserDataPath, host);
        state.Settings->LoadSettings(kPlayerSection.toString());
        return state;
    }

    void ShowFileError(const QString& detail, const QString&, const QString&) override
    {
        messages.append(detail);
    }

    int m_trackCount = 0;
};

} // namespace lantern
