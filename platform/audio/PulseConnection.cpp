// SPDX-License-Identifier: GPL-3.0-or-later
#include "PulseConnection.h"

#include "Application.h"
#include "PulseOperation.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lantern {

namespace {

using namespace std::chrono_literals;

constexpr auto kFirstRetryIn = 100ms;
constexpr auto kLastRetryIn = 3000ms;

// Where no device is left, servers put a sink that nobody hears in its place, so that the streams
// on it live on. Beside another of that name it has a number.
bool StandsInForADevice(std::string_view sink)
{
    constexpr std::string_view kStandIn = "auto_null";
    return sink == kStandIn || (sink.starts_with(kStandIn) && sink[kStandIn.size()] == '.');
}

} // namespace

PulseConnection::PulseConnection(std::function<void()> changed)
    : m_changed(std::move(changed)), m_loop(pa_threaded_mainloop_new()), m_retryIn(kFirstRetryIn)
{
    m_api = pa_threaded_mainloop_get_api(m_loop);
    m_retryTimer = MakeTimer([](pa_mainloop_api*, pa_time_event*, const timeval*,
                                void* self) { static_cast<PulseConnection*>(self)->Connect(); },
                             this);
}

PulseConnection::~PulseConnection()
{
    pa_threaded_mainloop_stop(m_loop);
    Drop();
    FreeTimer(m_retryTimer);
    pa_threaded_mainloop_free(m_loop);
}

void PulseConnection::Start()
{
    Lock lock(*this);
    if (!std::exchange(m_started, true)) {
        pa_threaded_mainloop_set_name(m_loop, "sound output");
        pa_threaded_mainloop_start(m_loop);
        Connect();
    }
}

pa_time_event* PulseConnection::MakeTimer(pa_time_event_cb_t callback, void* userData)
{
    return m_api->time_new(m_api, nullptr, callback, userData);
}

void PulseConnection::StartTimer(pa_time_event* timer, std::chrono::milliseconds in)
{
    timeval when = {};
    pa_gettimeofday(&when);
    pa_timeval_add(&when, static_cast<pa_usec_t>(std::chrono::microseconds(in).count()));
    m_api->time_restart(timer, &when);
}

void PulseConnection::FreeTimer(pa_time_event* timer)
{
    m_api->time_free(timer);
}

void PulseConnection::Connect()
{
    Drop();
    pa_proplist* properties = pa_proplist_new();
    const QByteArray title = kApplicationTitle.toUtf8();
    const QByteArray id = kApplicationId.toUtf8();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, title.constData());
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, id.constData());
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, id.constData());
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "music");
    m_context = pa_context_new_with_proplist(m_api, nullptr, properties);
    pa_proplist_free(properties);

    const auto state = [](pa_context*, void* self) {
        static_cast<PulseConnection*>(self)->OnContextState();
    };
    const auto event = [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
        static_cast<PulseConnection*>(self)->RefreshSinks();
    };
    pa_context_set_state_callback(m_context, state, this);
    pa_context_set_subscribe_callback(m_context, event, this);
    // A server started from here would be waited for under the lock, so none is.
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 &&
        pa_context_get_state(m_context) != PA_CONTEXT_FAILED)
        OnContextState();
}

void PulseConnection::Drop()
{
    if (m_context) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        m_context = nullptr;
    }
    m_refreshing = false;
    m_refreshAgain = false;
}

void PulseConnection::OnContextState()
{
    const pa_context_state_t state = pa_context_get_state(m_context);
    if (state == PA_CONTEXT_READY) {
        m_retryIn = kFirstRetryIn;
        const auto mask = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK |
                                                              PA_SUBSCRIPTION_MASK_SERVER);
        Forget(pa_context_subscribe(m_context, mask, nullptr, nullptr));
        RefreshSinks();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        Publish({});
        StartTimer(m_retryTimer, m_retryIn);
        m_retryIn = std::min<std::chrono::milliseconds>(2 * m_retryIn, kLastRetryIn);
    }
}

void PulseConnection::HurryRetry()
{
    if (m_started && (!m_context || !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)))) {
        m_retryIn = kFirstRetryIn;
        StartTimer(m_retryTimer, 0ms);
    }
}

pa_context* PulseConnection::Context() const
{
    const bool ready = m_context && pa_context_get_state(m_context) == PA_CONTEXT_READY;
    return ready ? m_context : nullptr;
}

void PulseConnection::RefreshSinks()
{
    if (std::exchange(m_refreshing, true)) {
        m_refreshAgain = true;
        return;
    }
    m_arriving.clear();
    const auto onServer = [](pa_context*, const pa_server_info* info, void* self) {
        if (info)
            static_cast<PulseConnection*>(self)->OnServerInfo(*info);
    };
    const auto onSink = [](pa_context*, const pa_sink_info* info, int atEnd, void* self) {
        static_cast<PulseConnection*>(self)->OnSinkInfo(info, atEnd);
    };
    Forget(pa_context_get_server_info(m_context, onServer, this));
    Forget(pa_context_get_sink_info_list(m_context, onSink, this));
}

void PulseConnection::OnServerInfo(const pa_server_info& info)
{
    if (info.default_sink_name)
        m_defaultSink = info.default_sink_name;
    // It calls itself "PulseAudio (on PipeWire 0.3.65)".
    m_countsInSteps = info.server_name &&
                      std::string_view(info.server_name).find("PipeWire") != std::string_view::npos;
}

void PulseConnection::OnSinkInfo(const pa_sink_info* info, int atEnd)
{
    if (atEnd == 0 && info) {
        if (StandsInForADevice(info->name))
            return;
        const char* name = info->description ? info->description : info->name;
        m_arriving.push_back({info->name, QString::fromUtf8(name)});
        return;
    }
    m_refreshing = false;
    if (std::exchange(m_refreshAgain, false)) {
        RefreshSinks();
    } else {
        std::ranges::stable_partition(m_arriving, [this](const AudioOutput::Device& device) {
            return device.id == m_defaultSink;
        });
        Publish(std::move(m_arriving));
    }
}

void PulseConnection::Publish(std::vector<AudioOutput::Device> devices)
{
    {
        const std::scoped_lock guard(m_mutex);
        m_devices = std::move(devices);
        m_known = true;
    }
    m_knownNow.notify_all();
    m_changed();
}

void PulseConnection::WaitUntilKnown(std::chrono::milliseconds atMost)
{
    std::unique_lock guard(m_mutex);
    m_knownNow.wait_for(guard, atMost, [this] { return m_known; });
}

std::vector<AudioOutput::Device> PulseConnection::Devices()
{
    const std::scoped_lock guard(m_mutex);
    return m_devices;
}

bool PulseConnection::HasSink(const std::string& id)
{
    const std::scoped_lock guard(m_mutex);
    return std::ranges::any_of(
        m_devices, [&id](const AudioOutput::Device& device) { return device.id == id; });
}

} // namespace lantern
