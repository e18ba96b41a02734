// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/screen_colors.h"

#include "imaging/base/lcms.h"
#include "imaging/base/monitor_colors.h"
#include "imaging/base/screen_tables.h"

namespace complexion {

namespace {

ScreenTables tablesOf(const ColorProfile& profile) {
    if (profile.isSrgb())
        return srgbScreenTables();
    return profile.screenTables() ? *profile.screenTables() : screenTablesOf(profile.icc());
}

} // namespace

ColorProfile monitorProfile(std::span<const std::uint8_t> icc) {
    if (icc.size() > kMaxMonitorProfile)
        return {};
    const LcmsProfile opened = openLcmsProfile(icc);
    if (!opened || cmsGetDeviceClass(opened.get()) != cmsSigDisplayClass || !MonitorColors(icc).isValid())
        return {};
    return ColorProfile::fromIcc(icc);
}

std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile,
                                                      const ColorProfile& monitor) {
    if (profile == monitor)
        return nullptr;
    return transformOf(tablesOf(profile), monitor.isSrgb() ? MonitorColors() : MonitorColors(monitor.icc()));
}

} // namespace complexion
