// SPDX-License-Identifier: GPL-3.0-or-later
// On which device the stream plays: the chosen one whenever it is there, unless the user has moved
// the stream elsewhere in a mixer.
#include "PulseOperation.h"
#include "PulseOutput.h"

#include <algorithm>
#include <utility>

namespace lantern {

void PulseOutput::Select(const std::string& id)
{
    const PulseConnection::Lock lock(m_connection);
    m_device = id;
    m_movedByUser = false;
    MoveStream();
}

AudioOutput::Device PulseOutput::DeviceInUse()
{
    const PulseConnection::Lock lock(m_connection);
    const std::vector<Device> devices = m_connection.Devices();
    const bool hasStream = m_stream && pa_stream_get_state(m_stream) == PA_STREAM_READY;
    const std::string& wanted = hasStream ? m_sink : m_device;
    const auto found = std::ranges::find(devices, wanted, &Device::id);
    if (found != devices.end())
        return *found;
    return devices.empty() ? Device() : devices.front();
}

void PulseOutput::MoveStream()
{
    const std::vector<Device> devices = m_connection.Devices();
    if (!m_stream || pa_stream_get_state(m_stream) != PA_STREAM_READY || devices.empty())
        return;
    const std::string& target = m_connection.HasSink(m_device) ? m_device : devices.front().id;
    const char* current = pa_stream_get_device_name(m_stream);
    if (!current || target != current) {
        Forget(pa_context_move_sink_input_by_name(pa_stream_get_context(m_stream),
                                                  pa_stream_get_index(m_stream), target.c_str(),
                                                  nullptr, nullptr));
    }
}

void PulseOutput::ReturnToDevice()
{
    if (!m_movedByUser && m_connection.HasSink(m_device))
        MoveStream();
}

void PulseOutput::NoteSink()
{
    const char* sink = pa_stream_get_device_name(m_stream);
    m_sink = sink ? sink : "";
}

// Why, the next list of devices tells.
void PulseOutput::OnMoved()
{
    m_leftSink = m_sink;
    NoteSink();
    if (m_sink == m_device) {
        m_leftSink.clear();
        m_movedByUser = false;
    }
    m_connection.RefreshSinks();
    ForgetTiming();
}

// The list is news, or the link.
void PulseOutput::OnDevices()
{
    if (const std::string left = std::exchange(m_leftSink, {}); !left.empty()) {
        // From a sink that has gone the server moved it. The default is where the server says.
        m_movedByUser = !m_device.empty() && m_connection.HasSink(left);
    }
    ReturnToDevice();
    Converge();
}

} // namespace lantern
