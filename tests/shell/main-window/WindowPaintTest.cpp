// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureSurface.h"
#include "WindowFixture.h"

#include <QElapsedTimer>
#include <QPaintEvent>
#include <QThread>

namespace lantern {
namespace {

// What the window system is given to paint, without a test that asks for it by a grab.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& watched, int milliseconds = 0) : m_milliseconds(milliseconds)
    {
        watched.installEventFilter(this);
    }

    QRegion Painted;
    int Paints = 0;

    int Requests = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        Requests += event->type() == QEvent::UpdateRequest ? 1 : 0;
        if (event->type() == QEvent::Paint) {
            Painted += static_cast<QPaintEvent*>(event)->region();
            ++Paints;
            QThread::msleep(static_cast<unsigned long>(m_milliseconds)); // as a large window does
        }
        return false;
    }

private:
    int m_milliseconds;
};

class WindowPaintTest : public WindowFixture {
protected:
    static constexpr QRgb kBlue = 0xFF0000AA;
    static constexpr QRgb kOrange = 0xFFFFAA00;

    // The tick of a sound that has come that far.
    void TickAt(PacketIndex packet)
    {
        engine.PositionMs = (packet * 10 + 2) / 3;
        window.UpdatePlayer();
    }

    // The sound goes on in real time.
    void PlayOn(int milliseconds)
    {
        const std::int32_t begin = engine.PositionMs;
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < milliseconds) {
            engine.PositionMs = begin + static_cast<std::int32_t>(timer.elapsed());
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
    }

    static void Wait(int milliseconds)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }

    PictureSurface& Pic() { return PartNamed<PictureSurface>("pic"); }
    QRgb ShownColour() { return Pic().Image().pixels[0]; }
};

TEST_F(WindowPaintTest, APictureOfThePacketsIsPaintedThoughNothingElseChanges)
{
    Load(MakeTrack({packets::Colours(false, {0x000, 0x00A}), packets::Colours(true, {}),
                    packets::MemoryPreset(1)}));
    Press('F'); // there is no bar to be seen
    Settle();
    PaintWatch watch(Pic());
    TickAt(15);
    Settle();
    EXPECT_EQ(watch.Painted, QRegion(Pic().rect()));
    EXPECT_EQ(ShownColour(), kBlue);
}

TEST_F(WindowPaintTest, OneTickIsOnePainting)
{
    Load(MakeTrack({packets::MemoryPreset(8), packets::Colours(true, {0x111}),
                    packets::Colours(true, {0x222}), packets::Colours(true, {0x333})}));
    PaintWatch watch(Pic());
    TickAt(4);
    Settle();
    EXPECT_EQ(watch.Paints, 1);
    EXPECT_EQ(ShownColour(), 0xFF333333);
}

TEST_F(WindowPaintTest, TheBorderColourIsTheBackColourOfThePictureToo)
{
    Load(MakeBlueTrack());
    TickAt(15);
    EXPECT_EQ(Pic().BackColor(), kOrange);
}

TEST_F(WindowPaintTest, ANewBorderColourPaintsTheFullScreenAnew)
{
    Load(MakeBlueTrack());
    Press('F');
    Settle();
    PaintWatch watch(window);
    TickAt(15);
    Settle();
    EXPECT_EQ(watch.Painted, QRegion(window.rect()));
    EXPECT_EQ(window.grab().toImage().pixel(0, 0), kOrange);
}

TEST_F(WindowPaintTest, ANewBorderColourPaintsTheSkinAnew)
{
    Load(MakeBlueTrack());
    PaintWatch watch(PartNamed("Skinner"));
    TickAt(15);
    Settle();
    EXPECT_TRUE(watch.Painted.contains(window.rect().topLeft()));
    EXPECT_TRUE(watch.Painted.contains(window.rect().bottomRight()));
}

TEST_F(WindowPaintTest, AFlickerIsThinnedOutAndItsEndIsSeen)
{
    constexpr int kPaintMs = 15;
    std::vector<CdgPacket> packets = {packets::MemoryPreset(8)};
    for (std::uint16_t number = 2; number <= 4 * kPacketsPerSecond; ++number)
        packets.push_back(packets::Colours(true, {number}));
    Load(MakeTrack(packets));
    PaintWatch watch(Pic(), kPaintMs);
    PlayOn(1000); // the beginning may be a flash
    watch.Paints = 0;
    PlayOn(1000);
    EXPECT_LE(watch.Paints, 8); // without a limit, about fifty
    EXPECT_GE(watch.Paints, 2);
    Wait(300);
    const auto last = static_cast<std::uint32_t>(engine.PositionMs * 3 / 10);
    const auto component = [&](int shift) { return (last >> shift & 0xFU) * 17; };
    EXPECT_EQ(ShownColour(), 0xFF000000 | component(8) << 16 | component(4) << 8 | component(0));

    // Once that is seen, nothing is left to paint.
    Wait(400);
    PaintWatch rest(window);
    Wait(1000);
    EXPECT_EQ(rest.Requests, 0);
}

} // namespace
} // namespace lantern
