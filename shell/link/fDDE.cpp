// SPDX-License-Identifier: GPL-3.0-or-later
#include "fDDE.h"

#include "OwnedDescriptor.h"

#include <array>
#include <chrono>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <utility>

namespace lantern {
namespace {

using Clock = std::chrono::steady_clock;

// Bounds what the next connect or send may take, by what is left until the deadline.
bool LimitWaiting(int descriptor, Clock::time_point deadline)
{
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
    if (left.count() <= 0)
        return false;
    timeval limit = {};
    limit.tv_sec = left.count() / 1'000'000;
    limit.tv_usec = left.count() % 1'000'000;
    return setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit) == 0;
}

bool Connect(int descriptor, const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

// Whether all of it was taken.
bool Send(int descriptor, QByteArrayView bytes, Clock::time_point deadline)
{
    while (!bytes.isEmpty() && LimitWaiting(descriptor, deadline)) {
        const ssize_t sent =
            send(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes = bytes.sliced(sent);
    }
    return bytes.isEmpty();
}

} // namespace

QByteArray EncodeCommand(const QString& text)
{
    constexpr std::array kDigits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                    '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};
    QByteArray digits;
    for (const QChar character : text) {
        const unsigned unit = character.unicode();
        for (const unsigned shift : {12u, 8u, 4u, 0u})
            digits += kDigits[(unit >> shift) & 0xF];
    }
    return digits;
}

fDDE::fDDE(QByteArray linkPath) : m_linkPath(std::move(linkPath))
{
}

void fDDE::ExecuteDDE(const QString& commandText)
{
    m_isSent = false;
    const QByteArray hiddenText = EncodeCommand(commandText);
    if (hiddenText.size() > kLongestCommand)
        return;
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(kLinkTimeoutMs);
    // The end of the conversation is the end of the command: there is no terminator.
    const OwnedDescriptor link(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    m_isSent = link && LimitWaiting(link.Number(), deadline) &&
               Connect(link.Number(), m_linkPath) && Send(link.Number(), hiddenText, deadline);
}

} // namespace lantern
