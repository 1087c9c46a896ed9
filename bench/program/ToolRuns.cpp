// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolRuns.h"

#include <stdexcept>

namespace lantern::bench {
namespace {

using namespace lantern::test;

// Without network and environment, as a file may come from anywhere; to the end.
double MillisecondsInSandbox(const Stage& stage, const std::vector<std::string>& words)
{
    std::vector<std::string> all = {"bwrap",      "--unshare-all",
                                    "--clearenv", "--die-with-parent",
                                    "--ro-bind",  "/usr",
                                    "/usr",       "--symlink",
                                    "usr/lib",    "/lib",
                                    "--symlink",  "usr/lib64",
                                    "/lib64",     "--ro-bind",
                                    LANTERN_TOOL, "/tmp/tool",
                                    "--bind",     stage.folder.Path().native(),
                                    "/songs"};
    all.insert(all.end(), words.begin(), words.end());
    const Moment start = Clock::now();
    Process process({.arguments = all});
    const auto hasEnded = [&] { return !process.IsRunning(); };
    if (!Eventually(hasEnded, 10s, 0ms) || process.WaitForExit(0ms) != 0)
        throw std::runtime_error("it failed in the sandbox");
    return Milliseconds(Clock::now() - start);
}

} // namespace

Measurement MeasureThumbnail(const Stage& stage, Effort effort)
{
    effort.rounds *= 5; // short, and uneven
    const std::string track = "/songs/" + stage.track.filename().native();
    return Compare(
        "a thumbnail of four minutes, in a sandbox", "ms", "true, in a sandbox", effort,
        [&] {
            return MillisecondsInSandbox(
                stage, {"/tmp/tool", "thumbnail", track, "--size", "256", "--out", "/songs/t.png"});
        },
        [&] { return MillisecondsInSandbox(stage, {"/usr/bin/true"}); });
}

} // namespace lantern::bench
