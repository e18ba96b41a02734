// SPDX-License-Identifier: GPL-3.0-or-later
// The photo's colours on a monitor, compared with the colour library's.

#include "imaging/base/lcms.h"
#include "imaging/screen_colors.h"
#include "tests/fakes/profiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace complexion {
namespace {

constexpr double kMaxDifference = 0.5; // CIEDE2000

using Levels = std::array<double, 3>; // 0 to 255

LcmsProfile opened(const Bytes& icc) {
    return icc.empty() ? LcmsProfile(cmsCreate_sRGBProfile()) : openLcmsProfile(icc);
}

ColorProfile profileOf(const Bytes& icc) {
    return icc.empty() ? ColorProfile() : ColorProfile::fromIcc(icc);
}

/// Colours spread over the whole RGB cube, most of them between the nodes of tables.
std::vector<RGBA32> testColors() {
    std::vector<std::uint8_t> levels = {255};
    for (int level = 0; level < 255; level += 7)
        levels.push_back(static_cast<std::uint8_t>(level));
    std::vector<RGBA32> colors;
    for (const std::uint8_t red : levels)
        for (const std::uint8_t green : levels)
            for (const std::uint8_t blue : levels)
                colors.emplace_back(red, green, blue, std::uint8_t{255});
    return colors;
}

/// The monitor's levels by the colour library, not rounded.
std::vector<Levels> byTheLibrary(const Bytes& photo, const Bytes& monitor,
                                 const std::vector<RGBA32>& colors) {
    std::vector<Levels> levels;
    for (const RGBA32 color : colors)
        levels.push_back({color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0});
    const LcmsTransform transform(cmsCreateTransform(opened(photo).get(), TYPE_RGB_DBL, opened(monitor).get(),
                                                     TYPE_RGB_DBL, INTENT_RELATIVE_COLORIMETRIC,
                                                     cmsFLAGS_NOOPTIMIZE));
    cmsDoTransform(transform.get(), levels.data(), levels.data(),
                   static_cast<cmsUInt32Number>(levels.size()));
    for (Levels& color : levels)
        for (double& level : color)
            level = std::clamp(level, 0.0, 1.0) * 255;
    return levels;
}

class Viewer {
public:
    explicit Viewer(const Bytes& monitor) {
        const LcmsProfile lab(cmsCreateLab4Profile(nullptr));
        m_toLab.reset(cmsCreateTransform(opened(monitor).get(), TYPE_RGB_DBL, lab.get(), TYPE_Lab_DBL,
                                         INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE));
    }

    /// CIEDE2000 between two colours on the monitor.
    double difference(const Levels& a, const Levels& b) const {
        const cmsCIELab labA = seen(a);
        const cmsCIELab labB = seen(b);
        return cmsCIE2000DeltaE(&labA, &labB, 1, 1, 1);
    }

private:
    cmsCIELab seen(const Levels& levels) const {
        const Levels values = {levels[0] / 255, levels[1] / 255, levels[2] / 255};
        cmsCIELab lab = {};
        cmsDoTransform(m_toLab.get(), values.data(), &lab, 1);
        return lab;
    }

    LcmsTransform m_toLab;
};

/// The nearest to `exact` of all colours that round to `shown`: what is left is not due to rounding.
Levels unrounded(RGBA32 shown, const Levels& exact) {
    const std::array<int, 3> levels = {shown.red(), shown.green(), shown.blue()};
    Levels nearest = {};
    for (std::size_t c = 0; c < nearest.size(); ++c)
        nearest[c] = std::clamp(exact[c], std::max(0.0, levels[c] - 0.5), std::min(255.0, levels[c] + 0.5));
    return nearest;
}

void expectTheLibrarysColors(const Bytes& photo, const Bytes& monitor) {
    const std::vector<RGBA32> colors = testColors();
    const auto transform = screenTransform(profileOf(photo), monitorProfile(monitor));
    ASSERT_TRUE(transform);
    std::vector<RGBA32> shown = colors;
    transform->apply(shown);
    const std::vector<Levels> exact = byTheLibrary(photo, monitor, colors);
    const Viewer viewer(monitor);
    double maxDifference = 0;
    std::size_t worst = 0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const double difference = viewer.difference(unrounded(shown[i], exact[i]), exact[i]);
        if (difference > maxDifference) {
            maxDifference = difference;
            worst = i;
        }
    }
    EXPECT_LE(maxDifference, kMaxDifference)
        << std::hex << colors[worst].color << " is shown as " << shown[worst].color << std::dec
        << " instead of " << exact[worst][0] << ' ' << exact[worst][1] << ' ' << exact[worst][2];
}

TEST(MonitorColors, OfPrimariesAreTheColorLibrarys) {
    for (const Bytes& photo : {Bytes(), wideProfile(), tableProfile()})
        expectTheLibrarysColors(photo, monitorOfPrimaries());
}

TEST(MonitorColors, OfTablesAreTheColorLibrarys) {
    for (const Bytes& photo : {Bytes(), wideProfile(), tableProfile()})
        expectTheLibrarysColors(photo, monitorOfTables());
}

TEST(MonitorColors, OutsideOfSrgbAreNotClipped) {
    // The monitor shows more saturated greens than sRGB has.
    std::array<RGBA32, 2> greens = {RGBA32(125, 250, 100, 255), RGBA32(110, 250, 100, 255)};
    std::array<RGBA32, 2> onSrgb = greens;
    screenTransform(ColorProfile::fromIcc(wideProfile()))->apply(onSrgb);
    EXPECT_EQ(onSrgb[0].red(), onSrgb[1].red());
    screenTransform(ColorProfile::fromIcc(wideProfile()), monitorProfile(monitorOfPrimaries()))
        ->apply(greens);
    EXPECT_GT(greens[0].red(), greens[1].red() + 5);
}

TEST(MonitorColors, OfAPhotoInTheMonitorsOwnProfileAreNotConverted) {
    const ColorProfile monitor = monitorProfile(monitorOfPrimaries());
    EXPECT_EQ(screenTransform(ColorProfile::fromIcc(monitorOfPrimaries()), monitor), nullptr);
    EXPECT_NE(screenTransform(ColorProfile(), monitor), nullptr);
}

TEST(MonitorProfile, IsSrgbUnlessItIsAnRgbMonitors) {
    EXPECT_FALSE(monitorProfile(monitorOfPrimaries()).isSrgb());
    EXPECT_FALSE(monitorProfile(monitorOfTables()).isSrgb());
    EXPECT_TRUE(monitorProfile({}).isSrgb());
    EXPECT_TRUE(monitorProfile(Bytes(200, 7)).isSrgb());
    EXPECT_TRUE(monitorProfile(tableProfile()).isSrgb()); // a colour space
    EXPECT_TRUE(monitorProfile(grayProfile()).isSrgb());
    EXPECT_TRUE(monitorProfile(cmykProfile()).isSrgb());
    Bytes large = monitorOfPrimaries();
    large.resize((std::size_t{8} << 20) + 1);
    EXPECT_TRUE(monitorProfile(large).isSrgb());
}

TEST(MonitorProfile, IsSrgbIfItIsDamaged) {
    for (const Bytes& whole : {monitorOfPrimaries(), monitorOfTables()})
        for (std::size_t size = 0; size < 700; size += 7)
            EXPECT_TRUE(monitorProfile(ByteView(whole).first(std::min(size, whole.size() / 2))).isSrgb())
                << size;
}

TEST(MonitorProfile, WithoutColorsIsSrgb) {
    const auto without = [](cmsTagSignature tag) {
        cmsHPROFILE profile = openMonitor();
        cmsWriteTag(profile, tag, nullptr);
        return bytesOfProfile(profile);
    };
    EXPECT_TRUE(monitorProfile(without(cmsSigGreenColorantTag)).isSrgb());
    EXPECT_TRUE(monitorProfile(without(cmsSigBlueTRCTag)).isSrgb());
    cmsHPROFILE profile = openMonitor(); // two equal primaries
    cmsWriteTag(profile, cmsSigGreenColorantTag, cmsReadTag(profile, cmsSigRedColorantTag));
    EXPECT_TRUE(monitorProfile(bytesOfProfile(profile)).isSrgb());
}

} // namespace
} // namespace complexion
