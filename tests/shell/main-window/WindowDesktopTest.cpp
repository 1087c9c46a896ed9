// SPDX-License-Identifier: GPL-3.0-or-later
// The window as another program on the bus of the session finds and steers it.
#include "BusClient.h"
#include "WindowFixture.h"

#include <QAction>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QSemaphore>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>

#include <array>
#include <utility>

namespace lantern {
namespace {

const QString kName = QStringLiteral("org.mpris.MediaPlayer2.lyric_lantern");
const QString kPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kRoot = QStringLiteral("org.mpris.MediaPlayer2");
const QString kPlayer = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr const char* kAddress = "DBUS_SESSION_BUS_ADDRESS";

// One for all cases: a process keeps to the bus of the session that it found first.
const test::SessionBus& Bus()
{
    static const test::SessionBus bus;
    return bus;
}

class WindowDesktopTest : public WindowFixture {
protected:
    WindowDesktopTest() { qputenv(kAddress, QByteArray::fromStdString(Bus().Address())); }
    ~WindowDesktopTest() override
    {
        if (m_addressBefore.isNull())
            qunsetenv(kAddress);
        else
            qputenv(kAddress, m_addressBefore);
    }

    // With the second of three tracks.
    void Open()
    {
        for (QString& track : tracks)
            track = MakeBlueTrack();
        ASSERT_NO_FATAL_FAILURE(Load(tracks[1]));
        window.JoinDesktop();
        ASSERT_TRUE(BusClient::Soon([this] { return client.HasOwner(kName); }));
    }

    QVariant Property(const char* name, const QString& interface = kPlayer)
    {
        const QDBusMessage answer = client.Call(kName, kPath, kProperties, QStringLiteral("Get"),
                                                {interface, QString::fromLatin1(name)});
        return answer.arguments().value(0).value<QDBusVariant>().variant();
    }
    void Set(const char* name, const QVariant& value, const QString& interface = kPlayer)
    {
        client.Call(
            kName, kPath, kProperties, QStringLiteral("Set"),
            {interface, QString::fromLatin1(name), QVariant::fromValue(QDBusVariant(value))});
        Settle();
    }
    QDBusMessage::MessageType Do(const char* method, const QVariantList& arguments = {},
                                 const QString& interface = kPlayer)
    {
        const QDBusMessage answer =
            client.Call(kName, kPath, interface, QString::fromLatin1(method), arguments);
        Settle();
        return answer.type();
    }
    // Starts the timer when a change is told that nobody has asked for.
    void ListenForChanges(QTimer& told)
    {
        told.setInterval(std::chrono::hours(1));
        client.Connection().connect(kName, kPath, kProperties, QStringLiteral("PropertiesChanged"),
                                    &told, SLOT(start()));
        client.HasOwner(kName); // the bus has taken the wish when it answers the next one
    }
    QVariantMap Metadata() { return qdbus_cast<QVariantMap>(Property("Metadata")); }
    QString Title() { return Metadata().value(QStringLiteral("xesam:title")).toString(); }
    bool TitleBecomes(const QString& title)
    {
        return BusClient::Soon([&] { return Title() == title; });
    }

    BusClient client{Bus()};
    std::array<QString, 3> tracks;

private:
    const QByteArray m_addressBefore = qgetenv(kAddress);
};

TEST_F(WindowDesktopTest, ItTellsWhatItPlays)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    EXPECT_EQ(Title(), QStringLiteral("track2"));
    EXPECT_EQ(Metadata().value(QStringLiteral("xesam:url")).toString(),
              QString::fromLatin1(QUrl::fromLocalFile(tracks[1]).toEncoded()));
    EXPECT_EQ(Metadata().value(QStringLiteral("mpris:length")).toLongLong(), 10'000'000);
    EXPECT_EQ(Property("CanSeek"), true);
    EXPECT_EQ(Property("Fullscreen", kRoot), false);
    EXPECT_EQ(Property("DesktopEntry", kRoot), QStringLiteral("io.github.lyric_lantern.player"));
    EXPECT_EQ(Property("Identity", kRoot), QStringLiteral("Lyric Lantern CDG Player"));
    EXPECT_FALSE(Property("SupportedMimeTypes", kRoot).toStringList().isEmpty());
    EXPECT_NEAR(Property("MinimumRate").toDouble(), 0.1, 1e-6);
    EXPECT_NEAR(Property("MaximumRate").toDouble(), 1.9, 1e-6);
    for (const auto& [status, told] : {std::pair(SoundStatus::Playing, "Playing"),
                                       {SoundStatus::Paused, "Paused"},
                                       {SoundStatus::Stopped, "Stopped"}}) {
        engine.Status = status;
        EXPECT_EQ(Property("PlaybackStatus"), QString::fromLatin1(told));
    }
    engine.Tempo = 20;
    EXPECT_NEAR(Property("Rate").toDouble(), 1.2, 1e-6);
    engine.Volume = 30;
    EXPECT_NEAR(Property("Volume").toDouble(), 0.3, 1e-6);
    engine.Volume = 33.3F; // as it may stand in the settings
    EXPECT_EQ(Property("Volume").toDouble(), 0.333);
}

TEST_F(WindowDesktopTest, ItDoesWhatIsAsked)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    engine.Status = SoundStatus::Playing;
    Do("Pause");
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Do("Play");
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    Do("Stop");
    EXPECT_EQ(Property("PlaybackStatus"), QStringLiteral("Stopped"));
    Set("Rate", 0.7);
    EXPECT_NEAR(engine.Tempo, -30, 0.01);
    Set("Volume", 0.25);
    EXPECT_NEAR(engine.Volume, 25, 0.01);
    Set("Fullscreen", true, kRoot);
    EXPECT_TRUE(window.isFullScreen());
    Set("Fullscreen", false, kRoot);
    EXPECT_FALSE(window.isFullScreen());
}

TEST_F(WindowDesktopTest, ItGoesToAPosition)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const auto track =
        qvariant_cast<QDBusObjectPath>(Metadata().value(QStringLiteral("mpris:trackid")));
    Do("SetPosition", {QVariant::fromValue(track), qlonglong{6'000'000}});
    EXPECT_EQ(Property("Position").toLongLong(), 6'000'000);
    Do("Seek", {qlonglong{-2'000'000}});
    EXPECT_EQ(Property("Position").toLongLong(), 4'000'000);
}

TEST_F(WindowDesktopTest, ItGoesToTheTracksBeside)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    EXPECT_TRUE(BusClient::Soon([this] { return Property("CanGoNext") == true; }));
    EXPECT_EQ(Property("CanGoPrevious"), true);
    Do("Next");
    EXPECT_TRUE(TitleBecomes(QStringLiteral("track3")));
    EXPECT_TRUE(BusClient::Soon([this] { return Property("CanGoNext") == false; }));
    EXPECT_EQ(Property("CanGoPrevious"), true);
    Do("Next"); // there is none
    EXPECT_EQ(Title(), QStringLiteral("track3"));
    Do("Previous");
    EXPECT_TRUE(TitleBecomes(QStringLiteral("track2")));
    Do("Previous");
    EXPECT_TRUE(TitleBecomes(QStringLiteral("track1")));
    EXPECT_TRUE(BusClient::Soon([this] { return Property("CanGoPrevious") == false; }));
    EXPECT_EQ(Property("CanGoNext"), true);
}

// To look for them may take as long as a folder on another machine does.
TEST_F(WindowDesktopTest, ItGoesOnBeforeItHasLookedWhatLiesBesideTheNewTrack)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    EXPECT_TRUE(BusClient::Soon([this] { return Property("CanGoPrevious") == true; }));
    QThreadPool& threads = *QThreadPool::globalInstance();
    QSemaphore mayLook;
    for (int busy = 0; busy < threads.maxThreadCount(); ++busy)
        threads.start([&mayLook] { mayLook.acquire(); });
    Do("Previous");
    EXPECT_EQ(Title(), QStringLiteral("track1"));
    Do("Next");
    EXPECT_EQ(Title(), QStringLiteral("track2"));
    Do("Next");
    EXPECT_EQ(Title(), QStringLiteral("track3"));
    mayLook.release(threads.maxThreadCount());
    EXPECT_TRUE(BusClient::Soon([this] { return Property("CanGoNext") == false; }));
    EXPECT_EQ(Property("CanGoPrevious"), true);
    window.OpenMedia(folder.filePath(QStringLiteral("gone.cdg")));
    EXPECT_TRUE(BusClient::Soon([this] { return Property("CanGoPrevious") == false; }));
}

// The next track plays, waits or is silent as the one before.
TEST_F(WindowDesktopTest, AnotherTrackIsAsTheOneBefore)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    for (const char* told : {"Playing", "Paused", "Stopped"}) {
        Do("Stop");
        if (QLatin1String(told) != QLatin1String("Stopped"))
            Do("Play");
        if (QLatin1String(told) == QLatin1String("Paused"))
            Do("Pause");
        ASSERT_EQ(Property("PlaybackStatus"), QString::fromLatin1(told));
        const bool isForward = Title() != QStringLiteral("track3");
        const QString before = Title();
        Do(isForward ? "Next" : "Previous");
        ASSERT_TRUE(BusClient::Soon([&] { return Title() != before; }));
        EXPECT_EQ(Property("PlaybackStatus"), QString::fromLatin1(told));
    }
}

TEST_F(WindowDesktopTest, ItOpensWhatItCanPlay)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const auto open = [this](const QString& path) {
        return Do("OpenUri", {QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())});
    };
    EXPECT_EQ(open(tracks[0]), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(TitleBecomes(QStringLiteral("track1")));

    const QString text = folder.filePath(QStringLiteral("words.txt"));
    const QString sound = folder.filePath(QStringLiteral("track3.mp3"));
    for (const QString& path : {text, sound}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(open(text), QDBusMessage::ErrorMessage);
    EXPECT_EQ(open(folder.filePath(QStringLiteral("gone.cdg"))), QDBusMessage::ErrorMessage);
    EXPECT_EQ(open(folder.path()), QDBusMessage::ErrorMessage);
    EXPECT_EQ(Title(), QStringLiteral("track1"));
    // By its sound, as well.
    EXPECT_EQ(open(sound), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(TitleBecomes(QStringLiteral("track3")));
}

TEST_F(WindowDesktopTest, ATickTellsWhatHasChanged)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    window.UpdatePlayer();
    QTimer told;
    ListenForChanges(told);
    engine.Volume = 30;
    window.UpdatePlayer();
    EXPECT_TRUE(BusClient::Soon([&] { return told.isActive(); }));
}

TEST_F(WindowDesktopTest, AValueThatIsSetIsShownAsAMessage)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    Set("Volume", 0.25);
    EXPECT_EQ(Status(), QStringLiteral("Volume: 25%"));
    window.UpdatePlayer(); // the slider follows, and says so once more
    Set("Rate", 0.7);
    EXPECT_EQ(Status(), QStringLiteral("Speed: -30%"));
}

// A desktop that compares what it set with what it reads finds the same, and its own slider stays
// where it was put.
TEST_F(WindowDesktopTest, AValueThatIsSetReadsBackAndIsToldOnce)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    ASSERT_TRUE(BusClient::Soon([this] { return Property("CanGoNext") == true; }));
    QAction change; // a slot that counts
    int changes = 0;
    QObject::connect(&change, &QAction::triggered, [&] { ++changes; });
    client.Connection().connect(kName, kPath, kProperties, QStringLiteral("PropertiesChanged"),
                                &change, SLOT(trigger()));
    const auto expectHeld = [&](const char* name, double value, double held) {
        SCOPED_TRACE(testing::Message() << name << " " << value);
        const bool isNew = Property(name) != held;
        changes = 0;
        for (int again = 0; again < 3; ++again) {
            Set(name, value);
            EXPECT_EQ(Property(name).toDouble(), held);
            window.UpdatePlayer();
            EXPECT_EQ(Property(name).toDouble(), held);
        }
        client.HasOwner(kName); // the bus keeps what comes in its order
        Settle();
        EXPECT_EQ(changes, isNew ? 1 : 0);
    };
    for (int percent = 0; percent <= 100; percent += 3)
        expectHeld("Volume", percent / 100.0, percent / 100.0);
    for (int percent = 10; percent <= 190; percent += 5)
        expectHeld("Rate", percent / 100.0, percent / 100.0);
    // The player has no steps between.
    expectHeld("Volume", 0.333, 0.33);
    expectHeld("Volume", 2.0 / 3, 0.67);
    expectHeld("Rate", 1.2345, 1.23);
}

TEST_F(WindowDesktopTest, ItComesForwardAndGoesAsItIsAsked)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    window.showMinimized();
    Settle();
    EXPECT_EQ(Do("Raise", {}, kRoot), QDBusMessage::ReplyMessage);
    EXPECT_FALSE(window.isMinimized());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(Do("Quit", {}, kRoot), QDBusMessage::ReplyMessage);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(engine.Status, SoundStatus::Stopped);
    EXPECT_TRUE(BusClient::Soon([this] { return !client.HasOwner(kName); }))
        << "who is gone isn't asked any more";
}

TEST_F(WindowDesktopTest, TheTrackOfTheLastTimeIsOpenedByTheWishToPlay)
{
    state.Settings->SetSetting(kLastPlayedKey.toString(), MakeBlueTrack());
    ASSERT_NO_FATAL_FAILURE(Load());
    window.JoinDesktop();
    ASSERT_TRUE(BusClient::Soon([this] { return client.HasOwner(kName); }));
    EXPECT_EQ(Title(), QStringLiteral("track1"));
    EXPECT_EQ(Property("CanSeek"), false);
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
    Do("Play");
    EXPECT_TRUE(BusClient::Soon([this] { return engine.Status == SoundStatus::Playing; }));
    EXPECT_EQ(Property("CanSeek"), true);
}

} // namespace
} // namespace lantern
