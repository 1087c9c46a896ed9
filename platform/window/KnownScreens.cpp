// SPDX-License-Identifier: GPL-3.0-or-later
#include "KnownScreens.h"

#include <QScreen>

#include <algorithm>

namespace lantern {
namespace {

// What comes from the screen's own memory may hold anything.
QString Readable(const QString& text)
{
    QString readable = text;
    for (QChar& character : readable) {
        if (!character.isPrint())
            character = u' ';
    }
    return readable.simplified();
}

bool TellsWhatItIs(const ScreenIdentity& screen)
{
    return !screen.model.isEmpty() || !screen.serial.isEmpty();
}

bool AreSameKind(const ScreenIdentity& one, const ScreenIdentity& other)
{
    return one.maker == other.maker && one.model == other.model && one.serial == other.serial;
}

} // namespace

ScreenIdentity IdentityOf(const QScreen& screen)
{
    return {Readable(screen.name()), Readable(screen.manufacturer()), Readable(screen.model()),
            Readable(screen.serialNumber())};
}

std::optional<std::size_t> FindScreen(const ScreenIdentity& wanted, const ScreenIdentities& screens)
{
    std::optional<std::size_t> found;
    if (wanted.IsNone())
        return found;
    for (std::size_t i = 0; i < screens.size(); ++i) {
        const bool isOnPlug = screens[i].name == wanted.name;
        if (TellsWhatItIs(wanted) ? !AreSameKind(screens[i], wanted) : !isOnPlug)
            continue;
        if (isOnPlug)
            return i;
        if (!found)
            found = i;
    }
    return found;
}

std::optional<std::size_t> FindFreeScreen(const ScreenIdentity& wanted,
                                          const ScreenIdentities& screens,
                                          const std::function<bool(std::size_t)>& isFree)
{
    const std::optional<std::size_t> found = FindScreen(wanted, screens);
    for (std::size_t i = 0; found && i < screens.size(); ++i) {
        if (screens[i] == screens[*found] && isFree(i))
            return i;
    }
    return found;
}

QString ScreenCaption(const ScreenIdentity& screen)
{
    if (screen.model.isEmpty())
        return screen.name.isEmpty() ? screen.serial : screen.name;
    // Some models begin with their maker's name.
    if (screen.maker.isEmpty() || screen.model.startsWith(screen.maker, Qt::CaseInsensitive))
        return screen.model;
    return screen.maker + u' ' + screen.model;
}

QStringList ScreenCaptions(const ScreenIdentities& screens)
{
    QStringList captions;
    for (const ScreenIdentity& screen : screens) {
        const QString caption = ScreenCaption(screen);
        const auto isCalledSo = [&](const ScreenIdentity& other) {
            return ScreenCaption(other) == caption;
        };
        const auto hasItsSerial = [&](const ScreenIdentity& other) {
            return isCalledSo(other) && other.serial == screen.serial;
        };
        if (std::ranges::count_if(screens, isCalledSo) == 1)
            captions += caption;
        else if (!screen.serial.isEmpty() && std::ranges::count_if(screens, hasItsSerial) == 1)
            captions += QStringLiteral("%1 (%2)").arg(caption, screen.serial);
        else
            captions += QStringLiteral("%1 (%2)").arg(caption, screen.name);
    }
    return captions;
}

} // namespace lantern
