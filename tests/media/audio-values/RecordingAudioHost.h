// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioControl.h"

#include <map>
#include <string>
#include <vector>

namespace lantern {

// Windows that only remember what was shown on them.
class RecordingAudioHost : public AudioControlHost {
public:
    void ShowStatus(const QString& text) override { Statuses.push_back(text.toStdString()); }
    void SetValueText(AudioValue value, const QString& text) override
    {
        ValueTexts[value] = text.toStdString();
    }
    void SetDeviceText(const QString& name) override { DeviceText = name.toStdString(); }
    bool IsDeviceSaveOn() override { return DeviceSaveOn; }
    void SetOptionsOnTop(bool onTop) override
    {
        MenuCalls.emplace_back(onTop ? "options on top" : "options below");
    }
    bool IsMaximised() override { return Maximised; }
    void SetPointersBlank(bool blank) override
    {
        MenuCalls.emplace_back(blank ? "pointers blank" : "pointers default");
    }
    bool ShowMenu(const std::vector<DeviceMenuItem>& items) override
    {
        MenuCalls.push_back("menu of " + std::to_string(items.size()));
        return !GoneAfterMenu;
    }

    std::vector<std::string> Statuses;
    std::map<AudioValue, std::string> ValueTexts;
    std::string DeviceText;
    std::vector<std::string> MenuCalls;
    bool DeviceSaveOn = false;
    bool Maximised = false;
    bool GoneAfterMenu = false;
};

} // namespace lantern
