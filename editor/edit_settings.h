// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/color_profile.h"

#include <cstdint>
#include <mutex>
#include <optional>

namespace complexion {

/// What a repair is steered by, as it stands in the controls.
struct EditSettings {
    std::int64_t radius = 0;    // pixels
    std::int64_t colorType = 0; // 1: detect the colour, 0: use customColor
    RgbColor customColor;       // of sRGB
    float threshold = 0;        // grey levels
};

/// The settings as the controls last wrote them on the main thread, for repairs that read them on another.
/// Reading a setting whose control is gone is fatal, as reaching the control itself would be.
class EditSettingsMirror {
public:
    void setRadius(std::optional<std::int64_t> radius);
    void setColorType(std::optional<std::int64_t> colorType);
    void setCustomColor(std::optional<RgbColor> customColor);
    void setThreshold(std::optional<float> threshold);

    EditSettings read() const;

private:
    mutable std::mutex m_mutex;
    std::optional<std::int64_t> m_radius;
    std::optional<std::int64_t> m_colorType;
    std::optional<RgbColor> m_customColor;
    std::optional<float> m_threshold;
};

} // namespace complexion
