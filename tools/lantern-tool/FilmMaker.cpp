// SPDX-License-Identifier: GPL-3.0-or-later
// A module: what makes films, and all the libraries that this takes.
#include "FilmModule.h"
#include "FilmSound.h"
#include "FilmWriter.h"

#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace lantern::tool {
namespace {

constexpr int kWholeSpeed = 100;

std::int64_t Speed(const FilmOrder& order)
{
    return kWholeSpeed + order.speedPercent;
}

// The places of the grid that lie in the film. The last one may reach over its end.
std::int64_t PictureCount(const FilmOrder& order)
{
    const std::int64_t lengthMs = std::int64_t{order.toMs} - order.fromMs;
    const std::int64_t divisor = 1000 * Speed(order);
    return (lengthMs * kWholeSpeed * order.picturesPerSecond + divisor - 1) / divisor;
}

// The packet whose picture is seen at a place of the grid.
PacketIndex PacketAt(const FilmOrder& order, std::int64_t place)
{
    constexpr std::int64_t kPacketsIn10Ms = kPacketsPerSecond / 100;
    const std::int64_t divisor = std::int64_t{kWholeSpeed} * order.picturesPerSecond;
    const std::int64_t from = kPacketsIn10Ms * order.fromMs * divisor;
    const std::int64_t run = 10 * kPacketsPerSecond * Speed(order) * place;
    return static_cast<PacketIndex>((from + run) / (10 * divisor));
}

class FilmMaker {
public:
    FilmMaker(const Track& track, const FilmOrder& order, const FilmClient& client,
              FilmTrouble& trouble)
        : m_order(order), m_client(client), m_trouble(trouble),
          m_sound(track, ShapeFor(order.keySemitones, static_cast<float>(order.speedPercent)),
                  order.fromMs, order.toMs)
    {
    }

    void Make(const QString& path)
    {
        m_rate = FilmSoundRate(m_order.kind, m_sound.OwnRate());
        m_sound.SetRate(m_rate);
        m_film = FilmWriter::Open(path,
                                  {.kind = m_order.kind,
                                   .width = m_order.size.width(),
                                   .height = m_order.size.height(),
                                   .picturesPerSecond = m_order.picturesPerSecond,
                                   .soundRate = m_rate,
                                   .title = m_order.title,
                                   .artist = m_order.artist},
                                  m_trouble.file);
        const std::int64_t count = PictureCount(m_order);
        for (std::int64_t place = 0; place < count && m_trouble.IsNone(); ++place) {
            AddPicture(place);
            AddSoundUpTo(place + 1);
            m_client.tellDone(static_cast<double>(place + 1) / static_cast<double>(count));
        }
        // A sound is not as long as whole milliseconds.
        if (m_trouble.IsNone())
            AddSound(m_rate / 1000 + 1);
        if (m_trouble.IsNone())
            m_trouble.file = m_film->Finish();
    }

private:
    void AddPicture(std::int64_t place)
    {
        m_client.showPicture(PacketAt(m_order, place),
                             [this](const FilmPixels& pixels, const FilmRect& changed) {
                                 m_film->Paint(pixels, changed);
                             });
        m_trouble.file = m_film->NextPicture();
    }

    // A place of the grid.
    void AddSoundUpTo(std::int64_t place)
    {
        const std::int64_t wanted = place * m_rate / m_order.picturesPerSecond;
        if (m_trouble.IsNone())
            AddSound(wanted - m_frames);
        m_frames = wanted;
    }

    void AddSound(std::int64_t frames)
    {
        m_samples.resize(static_cast<std::size_t>(frames) * 2);
        std::size_t filled = 0;
        m_trouble.sound = m_sound.Read(m_samples, filled);
        if (m_trouble.IsNone())
            m_trouble.file = m_film->AddSound(std::span(m_samples).first(filled));
    }

    const FilmOrder& m_order;
    const FilmClient& m_client;
    FilmTrouble& m_trouble;
    FilmSound m_sound;
    std::unique_ptr<FilmWriter> m_film;
    int m_rate = 0;
    std::int64_t m_frames = 0; // of the sound, so far
    std::vector<float> m_samples;
};

} // namespace
} // namespace lantern::tool

extern "C" __attribute__((visibility("default"))) void
LanternMakeFilm(const lantern::Track& track, const lantern::tool::FilmOrder& order,
                const QString& path, const lantern::tool::FilmClient& client,
                lantern::tool::FilmTrouble& trouble)
{
    lantern::tool::FilmMaker(track, order, client, trouble).Make(path);
}
static_assert(std::is_same_v<decltype(&LanternMakeFilm), lantern::tool::MakeFilmFunction>);
