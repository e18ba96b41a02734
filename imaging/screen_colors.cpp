// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/screen_colors.h"

#include "imaging/lcms.h"

namespace complexion {

namespace {

class ToScreen final : public PixelTransform {
public:
    explicit ToScreen(const ColorProfile& profile) {
        const LcmsProfile from = openLcmsProfile(profile.icc());
        const LcmsProfile to(cmsCreate_sRGBProfile());
        // Without its one-pixel cache a transform may be used from several threads.
        m_transform.reset(cmsCreateTransform(from.get(), TYPE_ABGR_8, to.get(), TYPE_ABGR_8,
                                             INTENT_RELATIVE_COLORIMETRIC,
                                             cmsFLAGS_NOCACHE | cmsFLAGS_COPY_ALPHA));
    }

    void apply(std::span<RGBA32> pixels) const override {
        if (m_transform)
            cmsDoTransform(m_transform.get(), pixels.data(), pixels.data(),
                           static_cast<cmsUInt32Number>(pixels.size()));
    }

private:
    LcmsTransform m_transform;
};

} // namespace

std::shared_ptr<const PixelTransform> screenTransform(const ColorProfile& profile) {
    return profile.isSrgb() ? nullptr : std::make_shared<const ToScreen>(profile);
}

} // namespace complexion
