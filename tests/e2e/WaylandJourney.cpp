// SPDX-License-Identifier: GPL-3.0-or-later
#include "WaylandJourney.h"

#include <csignal>
#include <iostream>

namespace lantern::test {
namespace {

// What stands around the picture on a window that has its shape.
constexpr int kMargin = 25;
constexpr int kBelow = 25 + 5 + 48;

} // namespace

WaylandJourney::WaylandJourney(const std::vector<int>& scales)
    : Journey(kScreenSize, WindowManager::Absent), scale(scales.front()),
      compositor(std::make_unique<WaylandServer>(screen, scales)), m_log(folder / "player.log")
{
}

void WaylandJourney::TearDown()
{
    Journey::TearDown(); // first, as it keeps a picture of what stands there
    if (program && program->IsRunning()) {
        program->Signal(SIGTERM);
        EXPECT_EQ(program->WaitForExit(kPatience), 0) << "it does not end";
    }
    if (HasFailure())
        std::cout << "The player said:\n"
                  << ReadFile(m_log) << "\nThe compositor said:\n"
                  << compositor->Log() << '\n';
    program.reset();
    compositor.reset();
}

Process::Command WaylandJourney::CommandOf(const std::vector<std::string>& arguments,
                                           const EnvironmentChanges& environment,
                                           const std::filesystem::path& log) const
{
    Process::Command command = {
        .arguments = {Player::ProgramPath()}, .environment = screen.Environment(), .log = log};
    for (const EnvironmentChanges& more :
         {compositor->Environment(), sound.Environment(), home.Environment(), environment})
        command.environment.insert(command.environment.end(), more.begin(), more.end());
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return command;
}

void WaylandJourney::Start(const std::vector<std::string>& arguments,
                           const EnvironmentChanges& environment)
{
    Process::Command command = CommandOf(arguments, environment, m_log);
    command.environment.emplace_back("WAYLAND_DEBUG", "1");
    program = std::make_unique<Process>(command);
}

std::unique_ptr<Process> WaylandJourney::StartLater(const std::vector<std::string>& arguments,
                                                    const EnvironmentChanges& environment) const
{
    return std::make_unique<Process>(CommandOf(arguments, environment, folder / "later.log"));
}

void WaylandJourney::OpenTone()
{
    Start({WriteToneTrack("song", 60.0).string()});
    ASSERT_TRUE(AwaitPictureSize({576, 384})) << "the picture did not come";
    ASSERT_TRUE(AwaitSound()) << "the sound did not come";
}

bool WaylandJourney::AwaitRequest(const std::string& text) const
{
    return Eventually([&] { return Requests(text) != 0; }, kPatience);
}

std::size_t WaylandJourney::Requests(const std::string& text) const
{
    const std::string log = ReadFile(m_log);
    std::size_t count = 0;
    for (std::size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
        ++count;
    return count;
}

// The corner lies five units before the pointer; the frame is one unit wide.
bool WaylandJourney::AwaitMenu(Point opened)
{
    const Point corner = {opened.x - 5 * scale, opened.y - 5 * scale};
    const auto isThere = [&] {
        return eyes.At(corner) == kMenuFrame && eyes.At({corner.x + 40, corner.y}) == kMenuFrame &&
               eyes.At({corner.x, corner.y + 40}) == kMenuFrame &&
               eyes.At({corner.x + 40, corner.y + scale}) != kMenuFrame;
    };
    return Eventually(isThere, 5s);
}

bool WaylandJourney::AwaitNoMenu(Point opened)
{
    const Point corner = {opened.x - 5 * scale, opened.y - 5 * scale};
    return Eventually([&] { return eyes.At(corner) != kMenuFrame; }, 5s);
}

bool WaylandJourney::AwaitPictureSize(const QSize& units)
{
    return Eventually([&] { return PictureArea().size() == units * scale; }, kPatience, 50ms);
}

QRect WaylandJourney::WindowArea()
{
    return PictureArea().adjusted(-kMargin * scale, -kMargin * scale, kMargin * scale,
                                  kBelow * scale);
}

QRect WaylandJourney::FrameArea(const QSize& units)
{
    const QImage now = eyes.Screen();
    const QSize size = units * scale;
    const auto isFrame = [&](int x, int y) {
        return now.valid(x, y) && now.pixel(x, y) == kMenuFrame;
    };
    for (int y = 0; y < now.height(); ++y) {
        for (int x = 0; x < now.width(); ++x) {
            if (!isFrame(x, y) || isFrame(x - 1, y) || isFrame(x, y - 1))
                continue;
            int width = 1;
            while (isFrame(x + width, y))
                ++width;
            int height = 1;
            while (isFrame(x, y + height))
                ++height;
            if (width == size.width() && (height == size.height() || size.height() == 0))
                return {x, y, width, height};
        }
    }
    return {};
}

QRect WaylandJourney::AwaitFrame(const QSize& units)
{
    QRect area;
    Eventually([&] { return !(area = FrameArea(units)).isEmpty(); }, kPatience, 50ms);
    return area;
}

bool WaylandJourney::AwaitNoFrame(const QSize& units)
{
    return Eventually([&] { return FrameArea(units).isEmpty(); }, kPatience, 50ms);
}

} // namespace lantern::test
