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

    std::vector<std::string> Statuses;
    std::map<AudioValue, std::string> ValueTexts;
    std::string DeviceText;
};

} // namespace lantern
