// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lcms2.h>

#include <cstdint>
#include <memory>
#include <span>

namespace complexion {

// RAII owners of the colour library's objects.

struct LcmsProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using LcmsProfile = std::unique_ptr<void, LcmsProfileCloser>;

struct LcmsTransformDeleter {
    void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using LcmsTransform = std::unique_ptr<void, LcmsTransformDeleter>;

/// Opens the profile in `icc`. Null if it is not a valid profile.
inline LcmsProfile openLcmsProfile(std::span<const std::uint8_t> icc) {
    return LcmsProfile(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
}

} // namespace complexion
