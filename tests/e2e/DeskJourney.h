// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Journey.h"
#include "PlayerDesk.h"

#include <functional>

namespace lantern::test {

// A track plays, and whatever a user does to run one of the player's commands has to do what the
// command is for: the same by button, by key and by menu.
class DeskJourney : public Journey {
protected:
    using Act = std::function<void()>;

    static constexpr double kTrackSeconds = 200.0;
    static constexpr double kTone = 440.0;

    // With a web browser that only remembers where it was sent.
    void OpenDesk();

    // Before and after, the track plays at size 2 with the sound as it is, and the wheel and the
    // arrow keys change the volume. Commands that end the program are not among these.
    void ExpectCommand(int command, const Act& act);

    PlayerDesk Desk() const { return PlayerDesk(player->WindowArea(), player->IsFullScreen()); }
    // Opens the context menu over the picture and chooses a row of it.
    void ChooseRow(int row, int rows);
    double SecondsOfSlider();
    ::testing::AssertionResult Moves(double seconds, const Act& act);
    bool AwaitPictureSize(const QSize& size);
    bool AwaitFullScreen(bool isFull);
    // The picture that another program finds on the clipboard; none if there is no picture.
    QImage PastedImage() const;

private:
    Process::Command ClipboardCommand(const std::vector<std::string>& arguments) const;
    std::string Pasted(const std::vector<std::string>& arguments) const;
    void ExpectPlaying(int command, const Act& act);
    void ExpectSkip(double seconds, const Act& act);
    void ExpectSize(const QSize& size, const Act& act);
    void ExpectOptions(const Act& act);
    void ExpectWheelMode(int mode, const Act& act);
    void ExpectOpenDialog(const Act& act);
    void ExpectCopy(const Act& act);
    void ExpectWebSite(const Act& act);
};

} // namespace lantern::test
