// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"

#include <cstdint>
#include <mutex>
#include <optional>

namespace complexion {

/// The two ways to repair; their values are the places of their titles in the repair pop-up.
enum class RepairStyle : std::int8_t {
    FlatColor = 0, // one colour over what is darker or lighter than the disc
    Natural = 1,   // the skin's own shading and detail over what differs from the skin around
};

/// What a repair is steered by, as it stands in the controls.
struct EditSettings {
    std::int64_t radius = 0;                    // pixels
    std::int64_t colorType = 0;                 // 1: detect the colour, 0: use customColor
    RgbColor customColor;                       // of sRGB
    float threshold = 0;                        // grey levels
    RepairStyle style = RepairStyle::FlatColor; // with Natural, colorType and customColor have no part
};

/// The settings as the controls last wrote them on the main thread, for repairs that read them on another.
/// Reading a setting whose control is gone is fatal, as reaching the control itself would be.
class EditSettingsMirror {
public:
    void setRadius(std::optional<std::int64_t> radius);
    void setColorType(std::optional<std::int64_t> colorType);
    void setCustomColor(std::optional<RgbColor> customColor);
    void setThreshold(std::optional<float> threshold);
    void setStyle(std::optional<RepairStyle> style);

    EditSettings read() const;

private:
    mutable std::mutex m_mutex;
    std::optional<std::int64_t> m_radius;
    std::optional<std::int64_t> m_colorType;
    std::optional<RgbColor> m_customColor;
    std::optional<float> m_threshold;
    std::optional<RepairStyle> m_style;
};

} // namespace complexion
