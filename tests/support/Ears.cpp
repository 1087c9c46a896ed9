// SPDX-License-Identifier: GPL-3.0-or-later
#include "Ears.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <pulse/pulseaudio.h>
#include <stdexcept>
#include <sys/time.h>

namespace lantern::test {
namespace {

constexpr pa_sample_spec kFormat = {PA_SAMPLE_FLOAT32LE, Recording::kRate, 2};
constexpr std::size_t kFrameSize = 2 * sizeof(float);
constexpr pa_usec_t kMarkPeriod = 40'000;
constexpr std::uint32_t kFragmentFrames = Recording::kRate / 50;
// Marks this far around a frame decide when it was heard.
constexpr double kNeighbourhood = 1.5 * Recording::kRate;

// The server's time stamps are of the wall clock; ours is not.
Moment FromWallClock(const timeval& stamp)
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    const auto age = std::chrono::seconds(now.tv_sec - stamp.tv_sec) +
                     std::chrono::microseconds(now.tv_usec - stamp.tv_usec);
    return Clock::now() - age;
}

double FramesIn(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count() * Recording::kRate;
}

} // namespace

// Everything below the constructor runs on the thread of the main loop or under its lock.
struct Ears::Listener {
    Listener(const SoundServer& server, const std::string& sink);
    ~Listener();

    void Connect(const SoundServer& server);
    void Record(const std::string& sink);
    void Receive();
    void Mark();
    void AskForTiming();

    pa_threaded_mainloop* loop = pa_threaded_mainloop_new();
    pa_context* context = nullptr;
    pa_stream* stream = nullptr;
    pa_time_event* timer = nullptr;
    Recording recording;
};

Ears::Listener::Listener(const SoundServer& server, const std::string& sink)
{
    pa_threaded_mainloop_start(loop);
    pa_threaded_mainloop_lock(loop);
    Connect(server);
    Record(sink);
    pa_threaded_mainloop_unlock(loop);
}

Ears::Listener::~Listener()
{
    pa_threaded_mainloop_lock(loop);
    if (timer != nullptr)
        pa_threaded_mainloop_get_api(loop)->time_free(timer);
    if (stream != nullptr) {
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
    if (context != nullptr) {
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
    pa_threaded_mainloop_unlock(loop);
    pa_threaded_mainloop_stop(loop);
    pa_threaded_mainloop_free(loop);
}

void Ears::Listener::Connect(const SoundServer& server)
{
    const auto wake = [](auto*, void* self) {
        pa_threaded_mainloop_signal(static_cast<Listener*>(self)->loop, 0);
    };
    context = pa_context_new(pa_threaded_mainloop_get_api(loop), "ears");
    pa_context_set_state_callback(context, wake, this);
    pa_context_connect(context, server.Address().c_str(), PA_CONTEXT_NOAUTOSPAWN, nullptr);
    while (pa_context_get_state(context) != PA_CONTEXT_READY) {
        if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(context)))
            throw std::runtime_error("the ears cannot reach the sound server");
        pa_threaded_mainloop_wait(loop);
    }
}

void Ears::Listener::Record(const std::string& sink)
{
    const auto wake = [](pa_stream*, void* self) {
        pa_threaded_mainloop_signal(static_cast<Listener*>(self)->loop, 0);
    };
    stream = pa_stream_new(context, "ears", &kFormat, nullptr);
    pa_stream_set_state_callback(stream, wake, this);
    pa_stream_set_read_callback(
        stream,
        [](pa_stream*, std::size_t, void* self) { static_cast<Listener*>(self)->Receive(); }, this);
    constexpr std::uint32_t kWhatever = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer = {kWhatever, kWhatever, kWhatever, kWhatever,
                                   kFragmentFrames * static_cast<std::uint32_t>(kFrameSize)};
    pa_stream_connect_record(stream, (sink + ".monitor").c_str(), &buffer,
                             PA_STREAM_ADJUST_LATENCY);
    while (pa_stream_get_state(stream) != PA_STREAM_READY) {
        if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream)))
            throw std::runtime_error("the ears cannot record " + sink);
        pa_threaded_mainloop_wait(loop);
    }
    AskForTiming();
}

void Ears::Listener::Receive()
{
    const void* data = nullptr;
    std::size_t size = 0;
    while (pa_stream_peek(stream, &data, &size) == 0 && size > 0) {
        const std::size_t count = recording.stereo.size();
        recording.stereo.resize(count + size / sizeof(float), 0.0F); // a hole is silence
        if (data != nullptr)
            std::memcpy(recording.stereo.data() + count, data, size);
        pa_stream_drop(stream);
    }
}

void Ears::Listener::Mark()
{
    const pa_timing_info* timing = pa_stream_get_timing_info(stream);
    if (timing == nullptr || timing->write_index_corrupt != 0)
        return;
    // The monitor gets each frame when the sink takes it, which is before it is heard by the
    // sink's latency; a frame still on its way to the monitor counts as not yet written.
    const double written = static_cast<double>(timing->write_index) / kFrameSize;
    const double ahead =
        static_cast<double>(timing->sink_usec) - static_cast<double>(timing->source_usec);
    recording.marks.emplace_back(FromWallClock(timing->timestamp),
                                 written - ahead * 1e-6 * Recording::kRate);
}

void Ears::Listener::AskForTiming()
{
    pa_operation* operation = pa_stream_update_timing_info(
        stream,
        [](pa_stream*, int success, void* self) {
            if (success != 0)
                static_cast<Listener*>(self)->Mark();
        },
        this);
    if (operation != nullptr)
        pa_operation_unref(operation);

    const auto again = [](pa_mainloop_api* api, pa_time_event* event, const timeval*,
                          void* userdata) {
        auto* self = static_cast<Listener*>(userdata);
        api->time_free(event);
        self->timer = nullptr;
        self->AskForTiming();
    };
    timer = pa_context_rttime_new(context, pa_rtclock_now() + kMarkPeriod, again, this);
}

Moment Recording::HeardAt(double frame) const
{
    const auto distance = [&](const auto& mark) { return std::abs(mark.second - frame); };
    const auto nearest =
        std::min_element(marks.begin(), marks.end(),
                         [&](const auto& a, const auto& b) { return distance(a) < distance(b); });
    if (nearest == marks.end())
        throw std::logic_error("a recording without marks has no times");
    // Each mark in the neighbourhood gives an answer; the middle one is not moved by a late one.
    std::vector<Moment> answers;
    for (const auto& mark : marks) {
        if (distance(mark) <= kNeighbourhood + distance(*nearest))
            answers.push_back(mark.first + FromSeconds((frame - mark.second) / kRate));
    }
    const auto middle = answers.begin() + static_cast<std::ptrdiff_t>(answers.size() / 2);
    std::nth_element(answers.begin(), middle, answers.end());
    return *middle;
}

std::int64_t Recording::FrameAt(Moment moment) const
{
    const auto nearest =
        std::min_element(marks.begin(), marks.end(), [&](const auto& a, const auto& b) {
            return std::chrono::abs(a.first - moment) < std::chrono::abs(b.first - moment);
        });
    if (nearest == marks.end())
        throw std::logic_error("a recording without marks has no times");
    const double frame = nearest->second + FramesIn(moment - nearest->first);
    return std::clamp<std::int64_t>(std::llround(frame), 0, FrameCount());
}

Clock::duration Recording::Unsteadiness() const
{
    std::vector<Clock::duration> distances;
    for (const auto& [moment, frame] : marks)
        distances.push_back(std::chrono::abs(HeardAt(frame) - moment));
    if (distances.empty())
        throw std::logic_error("a recording without marks has no times");
    const auto third = distances.begin() + (3 * std::ssize(distances) - 1) / 4;
    std::nth_element(distances.begin(), third, distances.end());
    return *third;
}

std::vector<float> Recording::Between(Moment from, Moment to) const
{
    return {stereo.begin() + FrameAt(from) * 2, stereo.begin() + FrameAt(to) * 2};
}

Ears::Ears(const SoundServer& server, const std::string& sink)
    : m_listener(std::make_unique<Listener>(server, sink))
{
}

Ears::~Ears() = default;

Recording Ears::Heard() const
{
    pa_threaded_mainloop_lock(m_listener->loop);
    Recording copy = m_listener->recording;
    pa_threaded_mainloop_unlock(m_listener->loop);
    return copy;
}

std::vector<float> Ears::HeardLately(Clock::duration howLong) const
{
    const auto wanted = 2 * std::llround(FramesIn(howLong));
    pa_threaded_mainloop_lock(m_listener->loop);
    const std::vector<float>& all = m_listener->recording.stereo;
    std::vector<float> last(all.end() - std::min<std::ptrdiff_t>(wanted, std::ssize(all)),
                            all.end());
    pa_threaded_mainloop_unlock(m_listener->loop);
    return last;
}

} // namespace lantern::test
