// SPDX-License-Identifier: GPL-3.0-or-later
#include "PulseOutput.h"

#include "Application.h"
#include "PulseOperation.h"

#include <algorithm>
#include <utility>

namespace lantern {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr int kBuffersPerSecond = 20; // 50 ms between the source and the ear
constexpr auto kRetryStreamIn = 250ms;

// As long as the name of a file can be: a server hangs up on one who sends it a text without end.
std::string NameToShow(const QString& name)
{
    constexpr int kLongest = 255;
    return (name.isEmpty() ? kApplicationTitle : name.left(kLongest)).toUtf8().toStdString();
}

} // namespace

std::unique_ptr<AudioOutput> MakeAudioOutput()
{
    return std::make_unique<PulseOutput>();
}

PulseOutput::PulseOutput() : m_name(NameToShow({})), m_connection([this] { OnDevices(); })
{
    const PulseConnection::Lock lock(m_connection);
    m_timingTimer =
        m_connection.MakeTimer([](pa_mainloop_api*, pa_time_event*, const timeval*,
                                  void* self) { static_cast<PulseOutput*>(self)->AskTiming(); },
                               this);
    m_retryTimer = m_connection.MakeTimer(
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
            static_cast<PulseOutput*>(self)->m_retryWaits = false;
            static_cast<PulseOutput*>(self)->Converge();
        },
        this);
}

PulseOutput::~PulseOutput()
{
    Close();
    const PulseConnection::Lock lock(m_connection);
    m_connection.FreeTimer(m_timingTimer);
    m_connection.FreeTimer(m_retryTimer);
}

std::vector<AudioOutput::Device> PulseOutput::WaitForDevices(std::chrono::milliseconds atMost)
{
    m_connection.Start();
    m_connection.WaitUntilKnown(atMost);
    return m_connection.Devices();
}

void PulseOutput::SetName(const QString& name)
{
    const PulseConnection::Lock lock(m_connection);
    m_name = NameToShow(name);
    NameStream();
}

void PulseOutput::NameStream()
{
    if (m_stream && pa_stream_get_state(m_stream) == PA_STREAM_READY)
        Forget(pa_stream_set_name(m_stream, m_name.c_str(), nullptr, nullptr));
}

void PulseOutput::Restart(int sampleRate, Source& source)
{
    const PulseConnection::Lock lock(m_connection);
    m_source = &source;
    m_sampleRate = sampleRate;
    m_begun = false;
    m_paused = false;
    m_writtenFrames = 0;
    {
        const std::scoped_lock guard(m_heardMutex);
        m_heard.Restart(sampleRate);
        m_state = State::Waiting;
    }
    m_timingStale = m_timingAsked;
    m_timingsTaken = 0;
    if (m_stream && m_streamRate != sampleRate)
        DropStream();
    else if (m_stream && pa_stream_get_state(m_stream) == PA_STREAM_READY)
        EmptyStream();
    m_connection.HurryRetry();
    Converge();
}

void PulseOutput::Begin()
{
    const PulseConnection::Lock lock(m_connection);
    m_begun = true;
    Converge();
}

void PulseOutput::Pause()
{
    const PulseConnection::Lock lock(m_connection);
    m_paused = true;
    if (std::exchange(m_sounding, false)) {
        Cork(true);
        Freeze();
    }
}

void PulseOutput::Close()
{
    const PulseConnection::Lock lock(m_connection);
    m_source = nullptr;
    m_sampleRate = 0;
    DropStream();
    m_state = State::Waiting;
}

bool PulseOutput::IsAnswerDue()
{
    const PulseConnection::Lock lock(m_connection);
    return m_stream && (m_emptying || pa_stream_get_state(m_stream) == PA_STREAM_CREATING);
}

double PulseOutput::HeardFrames()
{
    const std::scoped_lock guard(m_heardMutex);
    return m_heard.At(steady_clock::now(), static_cast<double>(m_writtenFrames));
}

// One step towards a sounding stream; called again at the event that the step waits for.
void PulseOutput::Converge()
{
    if (m_sampleRate == 0 || !m_connection.Context())
        return;
    if (!m_stream) {
        CreateStream();
    } else if (m_connection.Devices().empty()) {
        LoseStream(); // the server plays it on, to nobody
    } else if (m_emptied && !m_sounding) {
        // What the server has not asked for yet it asks for soon: corked until there is something.
        OnWritable(pa_stream_writable_size(m_stream));
    }
}

void PulseOutput::CreateStream()
{
    if (m_retryWaits || m_connection.Devices().empty() || m_state == State::Interrupted)
        return;
    pa_sample_spec format = {};
    format.format = PA_SAMPLE_FLOAT32NE;
    format.rate = static_cast<std::uint32_t>(m_sampleRate);
    format.channels = 2;
    pa_channel_map map = {};
    pa_channel_map_init_stereo(&map);
    m_stream = pa_stream_new(m_connection.Context(), m_name.c_str(), &format, &map);
    if (!m_stream)
        return;
    m_streamRate = m_sampleRate;
    ListenToStream();

    // Without a prebuffer the server's read index goes on in silence, as the time that is heard.
    pa_buffer_attr buffer = {};
    buffer.maxlength = buffer.minreq = buffer.fragsize = UINT32_MAX;
    buffer.tlength = format.rate / kBuffersPerSecond * static_cast<std::uint32_t>(kFrameBytes);
    buffer.prebuf = 0;
    m_movedByUser = m_movedByUser && m_connection.HasSink(m_sink);
    const std::string& wanted = m_movedByUser ? m_sink : m_device;
    const char* device = m_connection.HasSink(wanted) ? wanted.c_str() : nullptr;
    const auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY);
    if (pa_stream_connect_playback(m_stream, device, &buffer, flags, nullptr, nullptr) < 0)
        LoseStream();
}

void PulseOutput::ListenToStream()
{
    const auto onState = [](pa_stream* stream, void* self) {
        static_cast<PulseOutput*>(self)->OnStreamState(stream);
    };
    const auto onWrite = [](pa_stream*, std::size_t bytes, void* self) {
        static_cast<PulseOutput*>(self)->OnWritable(bytes);
    };
    const auto onUnderflow = [](pa_stream*, void* self) {
        static_cast<PulseOutput*>(self)->OnUnderflow();
    };
    const auto onMoved = [](pa_stream*, void* self) { static_cast<PulseOutput*>(self)->OnMoved(); };
    pa_stream_set_state_callback(m_stream, onState, this);
    pa_stream_set_write_callback(m_stream, onWrite, this);
    pa_stream_set_underflow_callback(m_stream, onUnderflow, this);
    pa_stream_set_moved_callback(m_stream, onMoved, this);
}

// A stream that has sounded leaves the rest to its owner, who knows where to go on.
void PulseOutput::LoseStream()
{
    if (m_writtenFrames > 0) {
        Freeze();
        m_state = State::Interrupted;
    }
    DropStream();
    m_retryWaits = true;
    m_connection.StartTimer(m_retryTimer, kRetryStreamIn);
}

void PulseOutput::DropStream()
{
    if (m_stream) {
        pa_stream* stream = std::exchange(m_stream, nullptr);
        pa_stream_set_state_callback(stream, nullptr, nullptr);
        pa_stream_set_write_callback(stream, nullptr, nullptr);
        pa_stream_set_underflow_callback(stream, nullptr, nullptr);
        pa_stream_set_moved_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
    m_emptying = false;
    m_emptied = false;
    m_sounding = false;
    m_timingAsked = false;
    m_timingStale = false;
    m_firstByte = 0;
}

// The server answers in order: the write index that comes back stands after the flush.
void PulseOutput::EmptyStream()
{
    m_sounding = false;
    m_emptied = false;
    if (std::exchange(m_emptying, true))
        return; // nothing has been written since that was asked
    Cork(true);
    Forget(pa_stream_flush(m_stream, nullptr, nullptr));
    const auto done = [](pa_stream* stream, int, void* self) {
        static_cast<PulseOutput*>(self)->OnEmptied(stream);
    };
    pa_operation* asked = pa_stream_update_timing_info(m_stream, done, this);
    if (!asked)
        LoseStream();
    Forget(asked);
}

void PulseOutput::OnEmptied(const pa_stream* stream)
{
    if (stream != m_stream)
        return;
    m_emptying = false;
    const pa_timing_info* timing = pa_stream_get_timing_info(m_stream);
    if (!timing || timing->write_index_corrupt != 0) {
        LoseStream();
        return;
    }
    m_firstByte = timing->write_index;
    m_emptied = true;
    Converge();
}

void PulseOutput::OnStreamState(const pa_stream* stream)
{
    if (stream != m_stream)
        return;
    const pa_stream_state_t state = pa_stream_get_state(m_stream);
    if (state == PA_STREAM_READY) {
        NameStream(); // given while the stream was being made
        NoteSink();
        ReturnToDevice(); // chosen while the stream was being made
        m_emptied = true;
        Converge();
    } else if (!PA_STREAM_IS_GOOD(state)) {
        LoseStream();
    }
}

void PulseOutput::OnWritable(std::size_t bytes)
{
    const bool wanted = m_begun && m_emptied && !m_paused && m_state != State::Interrupted;
    if (!wanted || bytes == static_cast<std::size_t>(-1))
        return;
    while (bytes >= kFrameBytes) {
        void* memory = nullptr;
        std::size_t size = bytes;
        if (pa_stream_begin_write(m_stream, &memory, &size) < 0 || !memory)
            break;
        const std::span<float> stereo(static_cast<float*>(memory), size / kFrameBytes * 2);
        const auto filled = static_cast<std::size_t>(m_source->Fill(stereo)) * kFrameBytes;
        if (filled == 0) {
            pa_stream_cancel_write(m_stream);
            break;
        }
        pa_stream_write(m_stream, memory, filled, nullptr, 0, PA_SEEK_RELATIVE);
        m_writtenFrames += static_cast<std::int64_t>(filled / kFrameBytes);
        bytes -= std::min(filled, bytes);
    }
    if (!m_sounding && m_writtenFrames > 0) {
        m_sounding = true;
        Cork(false);
        m_state = State::Running;
        AskTiming();
    }
}

void PulseOutput::OnUnderflow()
{
    const std::int64_t byte = pa_stream_get_underflow_index(m_stream);
    if (!m_sounding || (byte >= 0 && byte <= m_firstByte))
        return; // of what was played before the stream was emptied
    m_sounding = false;
    Cork(true);
    // What was written since then has come too late to be heard.
    const std::int64_t written = m_writtenFrames;
    const std::int64_t heard =
        byte < 0 ? written : (byte - m_firstByte) / static_cast<std::int64_t>(kFrameBytes);
    const std::scoped_lock guard(m_heardMutex);
    m_heard.Sample(static_cast<double>(std::min(heard, written)), steady_clock::now(), false);
    m_state = State::Interrupted;
}

void PulseOutput::Cork(bool corked)
{
    Forget(pa_stream_cork(m_stream, corked ? 1 : 0, nullptr, nullptr));
}

void PulseOutput::Freeze()
{
    const std::scoped_lock guard(m_heardMutex);
    m_heard.Freeze(steady_clock::now(), static_cast<double>(m_writtenFrames));
}

} // namespace lantern
