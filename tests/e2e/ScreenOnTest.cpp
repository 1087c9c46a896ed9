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
    void Open(const EnvironmentChanges& environment)
    {
        const std::filesystem::path track = WriteToneTrack("song", 60.0);
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
