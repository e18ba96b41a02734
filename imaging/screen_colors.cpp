// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/screen_colors.h"

#include "imaging/base/screen_tables.h"

namespace complexion {

std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile) {
    if (profile.isSrgb())
        return nullptr;
    return transformOf(profile.screenTables() ? *profile.screenTables() : screenTablesOf(profile.icc()));
}

} // namespace complexion
