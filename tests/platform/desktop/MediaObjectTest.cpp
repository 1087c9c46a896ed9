// SPDX-License-Identifier: GPL-3.0-or-later
// The media session on a real bus, asked by another program on it.
#include "BusClient.h"
#include "DesktopBus.h"
#include "FakeMediaPlayer.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QObject>
#include <QXmlStreamReader>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <set>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString kName = QStringLiteral("org.mpris.MediaPlayer2.fake_player");
const QString kPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kRoot = QStringLiteral("org.mpris.MediaPlayer2");
const QString kPlayer = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString kStage = QStringLiteral("io.github.lyric_lantern.player.Stage");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const MediaIdentity kIdentity = {.busName = QStringLiteral("fake_player"),
                                 .title = QStringLiteral("Fake"),
                                 .desktopEntry = QStringLiteral("org.example.fake-player"),
                                 .mimeTypes = {QStringLiteral("video/x-cdg")},
                                 .screenReason = QStringLiteral("Singing")};

QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

// "" for success, or the last word of the error's name.
std::string Outcome(const QDBusMessage& answer)
{
    return answer.type() == QDBusMessage::ErrorMessage
               ? answer.errorName().section(u'.', -1).toStdString()
               : std::string();
}

class MediaObjects : public ::testing::Test {
protected:
    MediaObjects() { Join(); }

    void Join()
    {
        desktop = std::make_unique<DesktopBus>(player, MediaRates{0.1, 1.9}, kIdentity);
        desktop->Join(QString::fromStdString(bus.Address()));
        EXPECT_TRUE(BusClient::Soon([this] { return client.HasOwner(kName); }));
    }

    std::string Wish(const char* member, const QVariantList& arguments = {})
    {
        const bool isRoot = std::set<std::string>{"Raise", "Quit"}.contains(member);
        return Outcome(
            client.Call(kName, kPath, isRoot ? kRoot : kPlayer, Text(member), arguments));
    }
    QVariant Get(const char* name, const QString& interface = kPlayer)
    {
        const QDBusMessage answer =
            client.Call(kName, kPath, kProperties, Text("Get"), {interface, Text(name)});
        EXPECT_EQ(Outcome(answer), "") << name;
        return answer.arguments().value(0).value<QDBusVariant>().variant();
    }
    std::string Set(const char* name, const QVariant& value, const QString& interface = kPlayer)
    {
        return Outcome(
            client.Call(kName, kPath, kProperties, Text("Set"),
                        {interface, Text(name), QVariant::fromValue(QDBusVariant(value))}));
    }
    QVariantMap Metadata() { return qdbus_cast<QVariantMap>(Get("Metadata")); }
    QVariant TrackId() { return Metadata().value(Text("mpris:trackid")); }

    const test::SessionBus bus;
    BusClient client{bus};
    FakeMediaPlayer player;
    std::unique_ptr<DesktopBus> desktop;
};

TEST_F(MediaObjects, EveryPropertyOfTheRootIsThere)
{
    const QVariantMap all = qdbus_cast<QVariantMap>(
        client.Call(kName, kPath, kProperties, Text("GetAll"), {kRoot}).arguments().value(0));
    EXPECT_EQ(all, (QVariantMap{{Text("CanQuit"), true},
                                {Text("Fullscreen"), false},
                                {Text("CanSetFullscreen"), true},
                                {Text("CanRaise"), true},
                                {Text("HasTrackList"), false},
                                {Text("Identity"), Text("Fake")},
                                {Text("DesktopEntry"), Text("org.example.fake-player")},
                                {Text("SupportedUriSchemes"), QStringList{Text("file")}},
                                {Text("SupportedMimeTypes"), QStringList{Text("video/x-cdg")}}}));
}

TEST_F(MediaObjects, EveryPropertyOfThePlayerIsThere)
{
    player.Now.status = MediaStatus::Paused;
    player.Now.rate = 1.2;
    player.Now.volume = 0.8;
    player.Now.canGoNext = true;
    player.At = 12'345;
    QVariantMap all = qdbus_cast<QVariantMap>(
        client.Call(kName, kPath, kProperties, Text("GetAll"), {kPlayer}).arguments().value(0));
    const QVariantMap data = qdbus_cast<QVariantMap>(all.take(Text("Metadata")));
    EXPECT_EQ(all, (QVariantMap{{Text("PlaybackStatus"), Text("Paused")},
                                {Text("Rate"), 1.2},
                                {Text("Volume"), 0.8},
                                {Text("Position"), 12'345'000LL},
                                {Text("MinimumRate"), 0.1},
                                {Text("MaximumRate"), 1.9},
                                {Text("CanGoNext"), true},
                                {Text("CanGoPrevious"), false},
                                {Text("CanPlay"), true},
                                {Text("CanPause"), true},
                                {Text("CanSeek"), true},
                                {Text("CanControl"), true}}));
    EXPECT_EQ(data.value(Text("mpris:trackid")).value<QDBusObjectPath>().path(),
              Text("/org/example/fake_player/track/1"));
    EXPECT_EQ(data.value(Text("mpris:length")), 100'000'000LL);
    EXPECT_EQ(data.value(Text("xesam:title")), Text("song"));
    EXPECT_EQ(data.value(Text("xesam:url")), Text("file:///songs/song"));
    EXPECT_EQ(data.size(), 4);
    player.Now.track.reset();
    EXPECT_THAT(Metadata(), IsEmpty());
    EXPECT_EQ(Get("CanPlay"), false);
    EXPECT_EQ(Get("CanPause"), false);
}

TEST_F(MediaObjects, WhatItSaysOfItselfIsWhatItHas)
{
    const QString xml =
        client.Call(kName, kPath, Text("org.freedesktop.DBus.Introspectable"), Text("Introspect"))
            .arguments()
            .value(0)
            .toString();
    QXmlStreamReader reader(xml);
    std::map<QString, QString> types;
    std::set<QString> methods;
    QString interface;
    while (!reader.atEnd()) {
        reader.readNext();
        const QString name = reader.attributes().value(Text("name")).toString();
        if (reader.isStartElement() && reader.name() == Text("interface"))
            interface = name;
        else if (reader.isStartElement() && (interface.startsWith(kRoot) || interface == kStage)) {
            if (reader.name() == Text("property"))
                types[interface + u'.' + name] = reader.attributes().value(Text("type")).toString();
            else if (reader.name() == Text("method"))
                methods.insert(name);
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_EQ(types.size(), 22U);
    for (const auto& [name, type] : types) {
        const QVariant value =
            Get(name.section(u'.', -1).toLatin1().constData(), name.section(u'.', 0, -2));
        const QString found = value.canConvert<QDBusArgument>()
                                  ? value.value<QDBusArgument>().currentSignature()
                                  : QLatin1String(QDBusMetaType::typeToSignature(value.metaType()));
        EXPECT_EQ(found, type) << name.toStdString();
    }
    EXPECT_THAT(methods, ::testing::UnorderedElementsAre(
                             Text("Raise"), Text("Quit"), Text("Next"), Text("Previous"),
                             Text("Pause"), Text("PlayPause"), Text("Stop"), Text("Play"),
                             Text("Seek"), Text("SetPosition"), Text("OpenUri"), Text("Show")));
}

TEST_F(MediaObjects, EveryMethodReachesThePlayer)
{
    player.Now.canGoNext = player.Now.canGoPrevious = true;
    for (const char* wish :
         {"Raise", "Quit", "Play", "Pause", "PlayPause", "Stop", "Next", "Previous"})
        EXPECT_EQ(Wish(wish), "") << wish;
    EXPECT_THAT(player.TakeLog(),
                ElementsAre("Raise", "Quit", "Play", "Pause", "Play", "Stop", "Next", "Previous"));
    EXPECT_EQ(Wish("Seek", {2'000'000LL}), "");
    EXPECT_EQ(Wish("SetPosition", {TrackId(), 9'000'000LL}), "");
    EXPECT_EQ(Wish("OpenUri", {Text("file:///songs/other.cdg")}), "");
    EXPECT_THAT(player.TakeLog(),
                ElementsAre("SetPosition 2000", "SetPosition 9000", "OpenFile /songs/other.cdg"));
}

// The one wish that is the player's own.
TEST_F(MediaObjects, TheStageWindowCanBeAskedFor)
{
    const auto show = [&](const QVariantList& arguments) {
        return Outcome(client.Call(kName, kPath, kStage, Text("Show"), arguments));
    };
    EXPECT_EQ(show({Text("token-1")}), "");
    EXPECT_EQ(show({QString()}), "");
    EXPECT_THAT(player.TakeLog(), ElementsAre("ShowStage token-1", "ShowStage "));
    EXPECT_NE(show({}), "");
    EXPECT_NE(show({7}), "");
    EXPECT_THAT(player.TakeLog(), ElementsAre());
}

TEST_F(MediaObjects, WhatCanBeWrittenIsWritten)
{
    EXPECT_EQ(Set("Rate", 1.5), "");
    EXPECT_EQ(Set("Volume", 0.25), "");
    EXPECT_EQ(Set("Fullscreen", true, kRoot), "");
    EXPECT_THAT(player.TakeLog(), ElementsAre("SetRate 1.5", "SetVolume 0.25", "FullScreen"));
    EXPECT_EQ(Get("Rate"), 1.5);
    EXPECT_EQ(Get("Volume"), 0.25);
    EXPECT_EQ(Get("Fullscreen", kRoot), true);
}

TEST_F(MediaObjects, WhatIsWrongIsRefusedByName)
{
    EXPECT_EQ(Set("Volume", std::numeric_limits<double>::quiet_NaN()), "InvalidArgs");
    EXPECT_EQ(Set("Volume", 1), "InvalidArgs");
    EXPECT_EQ(Set("Volume", Text("loud")), "InvalidArgs");
    EXPECT_EQ(Set("Rate", true), "InvalidArgs");
    EXPECT_EQ(Set("Fullscreen", 1.0, kRoot), "InvalidArgs");
    EXPECT_EQ(Set("Position", 5LL), "PropertyReadOnly");
    EXPECT_EQ(Set("Identity", Text("me"), kRoot), "PropertyReadOnly");
    EXPECT_EQ(Set("Shuffle", true), "UnknownProperty");
    EXPECT_EQ(Set("Volume", 0.5, kRoot), "UnknownProperty");
    EXPECT_EQ(Set("Volume", 0.5, Text("org.example.Other")), "UnknownInterface");
    EXPECT_EQ(Wish("Seek", {Text("far")}), "InvalidArgs");
    EXPECT_EQ(Wish("Seek", {2'000'000}), "InvalidArgs") << "32 bits are another type";
    EXPECT_EQ(Wish("Seek"), "InvalidArgs");
    EXPECT_EQ(Wish("Play", {1}), "InvalidArgs");
    EXPECT_EQ(Wish("SetPosition", {Text("/a"), 1LL}), "InvalidArgs");
    EXPECT_EQ(Wish("Dance"), "UnknownMethod");
    EXPECT_EQ(Wish("deleteLater"), "UnknownMethod");
    EXPECT_EQ(Wish("OpenUri", {Text("http://example.org/song.cdg")}), "NotSupported");
    EXPECT_EQ(Outcome(client.Call(kName, kPath, Text("org.example.Other"), Text("Play"))),
              "UnknownInterface");
    EXPECT_EQ(Outcome(client.Call(kName, kPath, kProperties, Text("Get"), {1, 2})), "InvalidArgs");
    EXPECT_EQ(Outcome(client.Call(kName, kPath, kProperties, Text("Take"))), "UnknownMethod");
    EXPECT_EQ(Outcome(client.Call(kName, Text("/else"), kPlayer, Text("Play"))), "UnknownObject");
    EXPECT_THAT(player.TakeLog(), IsEmpty());
    player.Now.track.reset();
    EXPECT_EQ(Wish("PlayPause"), "NotSupported");
}

TEST_F(MediaObjects, AMessageMayLeaveTheInterfaceOut)
{
    EXPECT_EQ(Outcome(client.Call(kName, kPath, {}, Text("Play"))), "");
    EXPECT_THAT(player.TakeLog(), ElementsAre("Play"));
}

TEST_F(MediaObjects, ATrackOfBeforeIsNotMoved)
{
    const QVariant before = TrackId();
    player.Now.track = FakeMediaPlayer::Song("another");
    EXPECT_EQ(Wish("SetPosition", {before, 5'000'000LL}), "");
    EXPECT_EQ(Wish("SetPosition", {QVariant::fromValue(QDBusObjectPath(Text("/"))), 5'000'000LL}),
              "");
    EXPECT_THAT(player.TakeLog(), IsEmpty());
    EXPECT_EQ(Wish("SetPosition", {TrackId(), 5'000'000LL}), "");
    EXPECT_THAT(player.TakeLog(), ElementsAre("SetPosition 5000"));
}

// A title may hold what no text on a bus can.
TEST_F(MediaObjects, ATitleThatIsNoTextIsToldAsFarAsItIsOne)
{
    QString title = Text("a\xF0\x9F\x8E\xA4");
    title += QChar(0xDCFF);
    title += QChar(0);
    title += u'b';
    player.Now.track->title = title;
    const QString told = Metadata().value(Text("xesam:title")).toString();
    EXPECT_EQ(told, Text("a\xF0\x9F\x8E\xA4\xEF\xBF\xBD\xEF\xBF\xBD"
                         "b"));
}

class Listener : public QObject {
    Q_OBJECT

public:
    explicit Listener(BusClient& client)
    {
        client.Connection().connect(kName, kPath, kProperties, Text("PropertiesChanged"), this,
                                    SLOT(Hear(QDBusMessage)));
        client.Connection().connect(kName, kPath, kPlayer, Text("Seeked"), this,
                                    SLOT(Hear(QDBusMessage)));
        // The bus has taken the wish to listen when it answers the next one.
        client.HasOwner(kName);
    }
    std::vector<QDBusMessage> Heard;

private Q_SLOTS:
    void Hear(const QDBusMessage& message) { Heard.push_back(message); }
};

TEST_F(MediaObjects, ChangesAreToldWithTheirValuesAndNoOthers)
{
    Listener listener(client);
    desktop->Follow();
    player.Now.volume = 0.5;
    player.Now.canGoNext = true;
    desktop->Follow();
    player.Now.isFullScreen = true;
    desktop->Follow();
    desktop->Follow();
    ASSERT_TRUE(BusClient::Soon([&] { return listener.Heard.size() >= 2; }));
    Get("Volume");
    ASSERT_EQ(listener.Heard.size(), 2U);
    EXPECT_EQ(listener.Heard[0].member(), Text("PropertiesChanged"));
    EXPECT_EQ(listener.Heard[0].arguments().value(0), kPlayer);
    EXPECT_EQ(qdbus_cast<QVariantMap>(listener.Heard[0].arguments().value(1)),
              (QVariantMap{{Text("Volume"), 0.5}, {Text("CanGoNext"), true}}));
    EXPECT_EQ(listener.Heard[1].arguments().value(0), kRoot);
    EXPECT_EQ(qdbus_cast<QVariantMap>(listener.Heard[1].arguments().value(1)),
              (QVariantMap{{Text("Fullscreen"), true}}));
}

TEST_F(MediaObjects, AJumpIsToldInMicroseconds)
{
    Listener listener(client);
    EXPECT_EQ(Wish("Seek", {30'000'000LL}), "");
    ASSERT_TRUE(BusClient::Soon([&] { return !listener.Heard.empty(); }));
    EXPECT_EQ(listener.Heard[0].member(), Text("Seeked"));
    EXPECT_EQ(listener.Heard[0].arguments(), (QVariantList{30'000'000LL}));
    EXPECT_EQ(listener.Heard[0].signature(), Text("x"));
}

TEST_F(MediaObjects, ANameThatIsTakenGetsANumber)
{
    test::SessionBus other;
    BusClient stranger(other);
    stranger.Connection().registerService(kName);
    DesktopBus second(player, {}, kIdentity);
    second.Join(QString::fromStdString(other.Address()));
    const QString name = kName + QStringLiteral(".instance%1").arg(getpid());
    EXPECT_TRUE(BusClient::Soon([&] { return stranger.HasOwner(name); }));
}

TEST_F(MediaObjects, WhoLeavesIsGoneFromTheBus)
{
    desktop->Leave();
    EXPECT_TRUE(BusClient::Soon([this] { return !client.HasOwner(kName); }));
    desktop->Follow();
    Join();
    EXPECT_EQ(Get("Volume"), 1.0);
}

TEST_F(MediaObjects, NoBusAndABusThatDiesAreNoTrouble)
{
    DesktopBus alone(player, {}, kIdentity);
    alone.Join(Text("unix:path=/nowhere/bus"));
    BusClient::Soon([] { return false; }, std::chrono::milliseconds(200));
    alone.Follow();
    auto dying = std::make_unique<test::SessionBus>();
    BusClient witness(*dying);
    DesktopBus bereft(player, {}, kIdentity);
    bereft.Join(QString::fromStdString(dying->Address()));
    ASSERT_TRUE(BusClient::Soon([&] { return witness.HasOwner(kName); }));
    dying.reset();
    for (int i = 0; i < 20; ++i) {
        player.Now.volume = i / 20.0;
        player.At += 5000;
        bereft.Follow();
        QCoreApplication::processEvents();
    }
}

// Messages as a hostile program may send them: any member, any arguments.
TEST_F(MediaObjects, MessagesByChanceAreAllAnswered)
{
    std::mt19937 chance(5);
    const auto any = [&](const auto& list) { return list[chance() % std::size(list)]; };
    const QString paths[] = {kPath, kPath, kPath, Text("/"), Text("/org/mpris")};
    const QString interfaces[] = {kPlayer,
                                  kPlayer,
                                  kRoot,
                                  kProperties,
                                  kProperties,
                                  QString(),
                                  Text("org.mpris.MediaPlayer2.TrackList")};
    const QString members[] = {
        Text("Next"), Text("Previous"), Text("Pause"),       Text("PlayPause"), Text("Stop"),
        Text("Play"), Text("Seek"),     Text("SetPosition"), Text("OpenUri"),   Text("Get"),
        Text("Set"),  Text("GetAll"),   Text("Raise"),       Text("Introspect")};
    const QVariant values[] = {
        QVariant::fromValue(QDBusVariant(std::numeric_limits<double>::quiet_NaN())),
        QVariant::fromValue(QDBusVariant(-1e308)),
        QVariant::fromValue(QDBusVariant(QVariantMap{{Text("a"), 1}})),
        QVariant::fromValue(QDBusObjectPath(Text("/org/example/fake_player/track/1"))),
        std::numeric_limits<qlonglong>::min(),
        std::numeric_limits<qlonglong>::max(),
        QString(300'000, u'x'),
        Text("file:///songs/other.cdg"),
        Text("Volume"),
        Text("Rate"),
        kPlayer,
        kRoot,
        QByteArray(1000, '\xFF'),
        true,
        QStringList{Text("a")},
        QVariantMap{{Text("b"), 2.0}},
        1.5};
    player.Now.canGoNext = player.Now.canGoPrevious = true;
    for (int i = 0; i < 3000; ++i) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(kName, any(paths), any(interfaces), any(members));
        for (auto count = chance() % 4; count > 0; --count)
            message << any(values);
        const QDBusMessage answer = client.Ask(message);
        ASSERT_NE(Outcome(answer), "answer") << message.member().toStdString();
        ASSERT_NE(Outcome(answer), "NoReply") << message.member().toStdString();
        ASSERT_GE(player.Now.volume, 0);
        ASSERT_LE(player.Now.volume, 1);
        ASSERT_GE(player.Now.rate, 0.1);
        ASSERT_LE(player.Now.rate, 1.9);
        ASSERT_GE(player.At, 0);
        ASSERT_LE(player.At, 100'000);
    }
    EXPECT_EQ(Wish("Pause"), "");
}

} // namespace
} // namespace lantern

#include "MediaObjectTest.moc"
