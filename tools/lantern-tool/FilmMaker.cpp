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
constexpr int kPlacesOfAPiece = 20;

std::int64_t Speed(const FilmOrder& order)
{
    return kWholeSpeed + order.speedPercent;
}

// The places of the grid that lie in the film: milliseconds. The last one may reach over its end.
constexpr int kPlacesPerSecond = 1000;

std::int64_t PlaceCount(const FilmOrder& order)
{
    const std::int64_t lengthMs = std::int64_t{order.toMs} - order.fromMs;
    return (lengthMs * kWholeSpeed + Speed(order) - 1) / Speed(order);
}

// The packet whose picture is due at a place: what the player has there.
PacketIndex PacketAt(const FilmOrder& order, std::int64_t place)
{
    const std::int64_t positionMs = order.fromMs + place * Speed(order) / kWholeSpeed;
    return static_cast<PacketIndex>(positionMs * kPacketsPerSecond / 1000);
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
                                   .placesPerSecond = kPlacesPerSecond,
                                   .picturesPerSecond = m_order.picturesPerSecond,
                                   .soundRate = m_rate,
                                   .title = m_order.title,
                                   .artist = m_order.artist},
                                  m_trouble.file);
        const std::int64_t count = PlaceCount(m_order);
        for (std::int64_t place = 0; place < count && m_trouble.IsNone(); ++place) {
            const bool isLast = place + 1 == count;
            AddPicture(place, isLast);
            // In pieces that are worth it.
            if ((place + 1) % kPlacesOfAPiece == 0 || isLast) {
                AddSoundUpTo(place + 1);
                m_client.tellDone(static_cast<double>(place + 1) / static_cast<double>(count));
            }
        }
        // A sound is not as long as whole milliseconds.
        if (m_trouble.IsNone())
            AddSound(m_rate / 1000 + 1);
        if (m_trouble.IsNone())
            m_trouble.file = m_film->Finish();
    }

private:
    void AddPicture(std::int64_t place, bool isLast)
    {
        const PacketIndex packet = PacketAt(m_order, place);
        if (packet != m_shown && (isLast || m_film->TakesPicture())) {
            m_shown = packet;
            m_client.showPicture(packet, [this](const FilmPixels& pixels, const FilmRect& changed) {
                m_film->Paint(pixels, changed);
            });
        }
        m_trouble.file = m_film->NextPicture();
    }

    // A place of the grid.
    void AddSoundUpTo(std::int64_t place)
    {
        const std::int64_t wanted = place * m_rate / kPlacesPerSecond;
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
    PacketIndex m_shown = -1;
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
