// SPDX-License-Identifier: GPL-3.0-or-later
#include "SilentBus.h"

#include "OwnedDescriptor.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lantern {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// A bus that is well answers within a millisecond, on a busy machine within some hundred.
constexpr auto kAnswersWithin = 2s;
constexpr const char* kAddressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr qsizetype kLongestLine = 4096;

// A field of a message's header, as the D-Bus protocol lays it out: a pair of code and text,
// aligned to 8 bytes.
void AddField(QByteArray& message, char code, char type, const QByteArray& text)
{
    message.append((8 - message.size() % 8) % 8, '\0');
    message.append(code).append('\1').append(type).append('\0');
    const auto size = static_cast<std::uint32_t>(text.size());
    for (int shift = 0; shift < 32; shift += 8)
        message += static_cast<char>(size >> shift & 0xFF);
    message += text + '\0';
}

// The first call that a bus takes: Hello.
QByteArray Greeting()
{
    constexpr char kLittleEndian = 'l';
    constexpr char kMethodCall = 1;
    constexpr char kVersion = 1;
    constexpr qsizetype kFieldsSizeAt = 12;
    constexpr qsizetype kFieldsAt = 16;
    QByteArray message;
    message.append(kLittleEndian).append(kMethodCall).append('\0').append(kVersion);
    message.append(4, '\0');              // no body
    message.append('\1').append(3, '\0'); // the serial number
    message.append(kFieldsAt - kFieldsSizeAt, '\0');
    AddField(message, 1, 'o', "/org/freedesktop/DBus");
    AddField(message, 2, 's', "org.freedesktop.DBus");
    AddField(message, 3, 's', "Hello");
    AddField(message, 6, 's', "org.freedesktop.DBus");
    message[kFieldsSizeAt] = static_cast<char>(message.size() - kFieldsAt);
    message.append((8 - message.size() % 8) % 8, '\0');
    return message;
}

std::optional<sockaddr_un> SocketOf(const QByteArray& address)
{
    const QByteArray first = address.split(';').first();
    if (!first.startsWith("unix:"))
        return std::nullopt;
    for (const QByteArray& pair : first.sliced(5).split(',')) {
        const bool isAbstract = pair.startsWith("abstract=");
        if (!isAbstract && !pair.startsWith("path="))
            continue;
        QByteArray name = QByteArray::fromPercentEncoding(pair.sliced(pair.indexOf('=') + 1));
        if (isAbstract)
            name.prepend('\0');
        sockaddr_un socket = {};
        socket.sun_family = AF_UNIX;
        if (name.isEmpty() || name.size() >= static_cast<qsizetype>(sizeof(socket.sun_path)))
            return std::nullopt;
        std::ranges::copy(name, socket.sun_path);
        return socket;
    }
    return std::nullopt;
}

socklen_t SizeOf(const sockaddr_un& socket)
{
    const char* const name = socket.sun_path;
    const std::size_t length = name[0] ? std::strlen(name) + 1 : 1 + std::strlen(name + 1);
    return static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
}

enum class Answer { Came, Silence, Closed };

// A connection that is waited for until one moment in all.
class Talk {
public:
    Talk(int descriptor, Clock::time_point end) : m_descriptor(descriptor), m_end(end) {}

    Answer Say(QByteArray words)
    {
        while (!words.isEmpty()) {
            if (!Wait(POLLOUT))
                return Answer::Silence;
            const ssize_t sent = send(m_descriptor, words.constData(),
                                      static_cast<std::size_t>(words.size()), MSG_NOSIGNAL);
            if (sent < 0 && errno != EAGAIN && errno != EINTR)
                return Answer::Closed;
            words.remove(0, std::max<ssize_t>(sent, 0));
        }
        return Answer::Came;
    }
    Answer HearByte(char& byte)
    {
        while (Wait(POLLIN)) {
            const ssize_t came = recv(m_descriptor, &byte, 1, 0);
            if (came > 0)
                return Answer::Came;
            if (came == 0 || (errno != EAGAIN && errno != EINTR))
                return Answer::Closed;
        }
        return Answer::Silence;
    }
    // Without its end.
    Answer HearLine(QByteArray& line)
    {
        for (char byte = 0; !line.endsWith("\r\n"); line += byte) {
            const Answer answer = HearByte(byte);
            if (answer != Answer::Came)
                return answer;
            if (line.size() > kLongestLine)
                return Answer::Silence; // it talks, but never says anything
        }
        line.chop(2);
        return Answer::Came;
    }

private:
    bool Wait(short events) const
    {
        pollfd waited = {m_descriptor, events, 0};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_end - Clock::now());
        return left.count() > 0 && poll(&waited, 1, static_cast<int>(left.count())) != 0 &&
               Clock::now() < m_end;
    }

    int m_descriptor;
    Clock::time_point m_end;
};

Answer Greet(Talk& talk)
{
    QByteArray line;
    const QByteArray user = QByteArray::number(getuid()).toHex();
    Answer answer = talk.Say(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n");
    if (answer == Answer::Came)
        answer = talk.HearLine(line);
    if (answer != Answer::Came)
        return answer;
    if (line.startsWith("REJECTED") || line.startsWith("ERROR"))
        return Answer::Came; // it may know another way
    if (!line.startsWith("OK"))
        return Answer::Silence;
    answer = talk.Say("BEGIN\r\n" + Greeting());
    char byteOrder = 0;
    if (answer == Answer::Came)
        answer = talk.HearByte(byteOrder);
    if (answer == Answer::Came && byteOrder != 'l' && byteOrder != 'B')
        return Answer::Silence;
    return answer;
}

} // namespace

bool IsBusSilent(const QByteArray& address, std::chrono::milliseconds atMost)
{
    const Clock::time_point end = Clock::now() + atMost;
    const std::optional<sockaddr_un> socketName = SocketOf(address);
    if (!socketName)
        return false;
    const OwnedDescriptor connection(
        socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!connection)
        return false;
    if (connect(connection.Number(), reinterpret_cast<const sockaddr*>(&*socketName),
                SizeOf(*socketName)) != 0)
        return errno == EAGAIN; // it listens, but takes nobody any more
    Talk talk(connection.Number(), end);
    return Greet(talk) == Answer::Silence;
}

void LeaveSilentBusOut()
{
    QByteArray address = qgetenv(kAddressVariable);
    if (address.isEmpty())
        address = "unix:path=" + qgetenv("XDG_RUNTIME_DIR").toPercentEncoding("/") + "/bus";
    if (IsBusSilent(address, kAnswersWithin))
        qputenv(kAddressVariable, "disabled:");
}

} // namespace lantern
