// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/edit_settings.h"

#include "imaging/base/fatal.h"

namespace complexion {

namespace {

template <class T>
T present(const std::optional<T>& setting, const char* whatIsGone) {
    if (!setting)
        fatal(whatIsGone);
    return *setting;
}

} // namespace

void EditSettingsMirror::setRadius(std::optional<std::int64_t> radius) {
    const std::scoped_lock lock(m_mutex);
    m_radius = radius;
}

void EditSettingsMirror::setColorType(std::optional<std::int64_t> colorType) {
    const std::scoped_lock lock(m_mutex);
    m_colorType = colorType;
}

void EditSettingsMirror::setCustomColor(std::optional<RgbColor> customColor) {
    const std::scoped_lock lock(m_mutex);
    m_customColor = customColor;
}

void EditSettingsMirror::setThreshold(std::optional<float> threshold) {
    const std::scoped_lock lock(m_mutex);
    m_threshold = threshold;
}

void EditSettingsMirror::setStyle(std::optional<RepairStyle> style) {
    const std::scoped_lock lock(m_mutex);
    m_style = style;
}

EditSettings EditSettingsMirror::read() const {
    const std::scoped_lock lock(m_mutex);
    return {.radius = present(m_radius, "stepperEditAreaSize is gone"),
            .colorType = present(m_colorType, "checkAutodetectColor is gone"),
            .customColor = present(m_customColor, "colorWellCustomColor is gone"),
            .threshold = present(m_threshold, "sliderThreshold is gone"),
            .style = present(m_style, "comboRepair is gone")};
}

} // namespace complexion
