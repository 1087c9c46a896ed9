// SPDX-License-Identifier: GPL-3.0-or-later
// Whether the screen stays on while a track plays, and only then: by the services that desktops
// have, played by python-dbusmock, and by a real display that blanks its screen after a second.
#include "Journey.h"
#include "MockService.h"

#include <X11/Xlib.h>
#include <X11/extensions/scrnsaver.h>
#include <csignal>

namespace lantern::test {
namespace {

class ScreenOn : public Journey {
protected:
    void Open(const EnvironmentChanges& environment, double seconds = 60.0)
    {
        const std::filesystem::path track = WriteToneTrack("song", seconds);
        ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}, environment));
        ASSERT_TRUE(AwaitPicture(kPicture));
        ASSERT_TRUE(AwaitSound());
    }
    // Asked for that often, and given back that often.
    static bool Awaits(const MockService& service, const std::string& asked, int askedCount,
                       const std::string& givenBack, int givenBackCount)
    {
        return Eventually(
            [&] {
                return service.Count(asked) == askedCount &&
                       service.Count(givenBack) == givenBackCount;
            },
            kPatience, 20ms);
    }
};

// A display of its own, as others may have left theirs in any state.
class BareScreen {
public:
    explicit BareScreen(const XServer& screen) : m_connection(screen.DisplayName())
    {
        XSetScreenSaver(m_connection.Display(), 1, 0, DontPreferBlanking, AllowExposures);
        XSync(m_connection.Display(), False);
    }
    ~BareScreen()
    {
        XSetScreenSaver(m_connection.Display(), 0, 0, DefaultBlanking, DefaultExposures);
        XForceScreenSaver(m_connection.Display(), ScreenSaverReset);
        XSync(m_connection.Display(), False);
    }

    bool IsBlank() const
    {
        XScreenSaverInfo info = {};
        XScreenSaverQueryInfo(m_connection.Display(), m_connection.Root(), &info);
        return info.state == ScreenSaverOn;
    }
    bool IsBlankSoon() const
    {
        return Eventually([this] { return IsBlank(); }, 10s, 50ms);
    }
    bool StaysOn() const
    {
        return !Eventually([this] { return IsBlank(); }, 4s, 50ms);
    }

private:
    XConnection m_connection;
};

constexpr const char* kSession = "org.freedesktop.ScreenSaver";
constexpr const char* kSessionPath = "/org/freedesktop/ScreenSaver";

TEST_F(ScreenOn, TheSessionIsAskedWhileATrackPlays)
{
    const SessionBus bus;
    const MockService service(bus, kSession, kSessionPath, kSession);
    service.Add("Inhibit", "ss", "u", "ret = 7");
    service.Add("UnInhibit", "u", "", "");
    ASSERT_NO_FATAL_FAILURE(Open(bus.Environment()));
    const std::string asked = " Inhibit \"io.github.lyric_lantern.player\" \"Playing a track\"";
    const std::string givenBack = " UnInhibit 7";
    EXPECT_TRUE(Awaits(service, asked, 1, givenBack, 0)) << service.Log();
    hand.Key("p");
    EXPECT_TRUE(Awaits(service, asked, 1, givenBack, 1)) << service.Log();
    hand.Key("p");
    EXPECT_TRUE(Awaits(service, asked, 2, givenBack, 1)) << service.Log();
    hand.Key("period");
    EXPECT_TRUE(Awaits(service, asked, 2, givenBack, 2)) << service.Log();
    hand.Key("p");
    EXPECT_TRUE(Awaits(service, asked, 3, givenBack, 2)) << service.Log();
    Leave();
    EXPECT_TRUE(Awaits(service, asked, 3, givenBack, 3)) << service.Log();
}

// What a service tells that counts for whom it keeps the screen on.
bool Tells(const MockService& service, const char* what)
{
    return Eventually([&] { return service.Count(what) == 1; }, 20s, 20ms);
}

TEST_F(ScreenOn, ASessionThatStartsItsServiceAnewIsAskedAnew)
{
    const SessionBus bus;
    auto service = std::make_unique<MockService>(bus, LANTERN_SCREEN_SAVER);
    ASSERT_NO_FATAL_FAILURE(Open(bus.Environment()));
    ASSERT_TRUE(Tells(*service, "asked, kept on by 1")) << service->Log();
    service.reset();
    const BareScreen bare(screen);
    EXPECT_TRUE(bare.StaysOn()) << "the display itself is asked while there is no service";
    service = std::make_unique<MockService>(bus, LANTERN_SCREEN_SAVER);
    EXPECT_TRUE(Tells(*service, "asked, kept on by 1")) << service->Log();
    EXPECT_TRUE(bare.IsBlankSoon()) << "the display is left to the service";
    hand.Key("p");
    EXPECT_TRUE(Tells(*service, "given back, kept on by 0")) << service->Log();
    EXPECT_EQ(service->Count("lied to"), 0);
    service = std::make_unique<MockService>(bus, LANTERN_SCREEN_SAVER);
    std::this_thread::sleep_for(2s);
    EXPECT_EQ(service->Log(), "") << "nothing plays";
}

TEST_F(ScreenOn, TheSessionHasItBackWhenThePlayerIsKilled)
{
    const SessionBus bus;
    const MockService service(bus, LANTERN_SCREEN_SAVER);
    ASSERT_NO_FATAL_FAILURE(Open(bus.Environment()));
    ASSERT_TRUE(Tells(service, "asked, kept on by 1")) << service.Log();
    player->Program().Signal(SIGKILL);
    EXPECT_TRUE(Tells(service, "left, kept on by 0")) << service.Log();
    player.reset();
}

TEST_F(ScreenOn, TheEndOfTheSongGivesItBack)
{
    const SessionBus bus;
    const MockService service(bus, LANTERN_SCREEN_SAVER);
    ASSERT_NO_FATAL_FAILURE(Open(bus.Environment(), 5.0));
    ASSERT_TRUE(Tells(service, "asked, kept on by 1")) << service.Log();
    EXPECT_TRUE(Tells(service, "given back, kept on by 0")) << service.Log();
    EXPECT_TRUE(AwaitSilence());
}

TEST_F(ScreenOn, InASandboxThePortalIsAsked)
{
    const std::string name = "org.freedesktop.portal.Desktop";
    const std::string path = "/org/freedesktop/portal/desktop";
    const SessionBus bus;
    const MockService service(bus, name, path, "org.freedesktop.portal.Inhibit");
    service.Add("Inhibit", "sua{sv}", "o", "ret = '" + path + "'");
    service.AddTo("org.freedesktop.portal.Request", "Close", "", "", "");
    EnvironmentChanges environment = bus.Environment();
    environment.emplace_back("SNAP", "/snap/player/1");
    ASSERT_NO_FATAL_FAILURE(Open(environment));
    EXPECT_TRUE(Awaits(service, " Inhibit \"\" 12 ", 1, " Close", 0)) << service.Log();
    hand.Key("p");
    EXPECT_TRUE(Awaits(service, " Inhibit \"\" 12 ", 1, " Close", 1)) << service.Log();
}

TEST_F(ScreenOn, OfABareDisplayItStaysOnWhileATrackPlaysAndNotAfterACrash)
{
    ASSERT_NO_FATAL_FAILURE(Open({}));
    const BareScreen bare(screen);
    EXPECT_TRUE(bare.StaysOn());
    hand.Key("p");
    EXPECT_TRUE(bare.IsBlankSoon());
    hand.Key("p");
    ASSERT_TRUE(Eventually([&] { return !bare.IsBlank(); }, kPatience));
    EXPECT_TRUE(bare.StaysOn());
    player->Program().Signal(SIGKILL);
    EXPECT_TRUE(bare.IsBlankSoon());
    player.reset();
}

} // namespace
} // namespace lantern::test
