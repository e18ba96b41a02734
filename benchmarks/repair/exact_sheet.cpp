// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/repair/exact_sheet.h"

#include "imaging/image_tools.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr int kScale = 5;
constexpr int kView = 64; // side in pixels of the photo
constexpr int kCell = kView * kScale;
constexpr int kGap = 4;
constexpr int kViews = 4;
constexpr int kWidth = kViews * (kCell + kGap);
constexpr int kAmplification = 8;
constexpr int kGrey = 128;
constexpr RGBA32 kBackground{38, 38, 38, 255};

RGBA32 amplifiedDifference(RGBA32 painted, RGBA32 saved) {
    const auto component = [](int before, int after) {
        return static_cast<std::uint8_t>(std::clamp(kGrey + kAmplification * (after - before), 0, 255));
    };
    return {component(painted.red(), saved.red()), component(painted.green(), saved.green()),
            component(painted.blue(), saved.blue()), 255};
}

} // namespace

void ExactSheet::add(const SavedRepair& repair, PixelPosition place) {
    const std::size_t top = m_pixels.size();
    m_pixels.resize(top + std::size_t{kWidth} * (kCell + kGap), kBackground);
    const int mcusAcross = (repair.size.width + repair.mcu.width - 1) / repair.mcu.width;
    for (int y = 0; y < kCell; ++y)
        for (int x = 0; x < kCell; ++x) {
            const int row = static_cast<int>(place.row) - kView / 2 + y / kScale;
            const int column = static_cast<int>(place.column) - kView / 2 + x / kScale;
            if (row < 0 || column < 0 || row >= repair.size.height || column >= repair.size.width)
                continue;
            const auto at = static_cast<std::size_t>(row) * static_cast<std::size_t>(repair.size.width) +
                            static_cast<std::size_t>(column);
            const auto mcu =
                static_cast<std::size_t>(row / repair.mcu.height * mcusAcross + column / repair.mcu.width);
            const auto set = [&](int view, RGBA32 pixel) {
                const int left = view * (kCell + kGap);
                m_pixels[top + static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(left + x)] =
                    pixel;
            };
            set(0, repair.photo[at]);
            set(1, repair.painted[at]);
            set(2, repair.saved[at]);
            if (repair.touched[mcu])
                set(3, amplifiedDifference(repair.painted[at], repair.saved[at]));
        }
}

bool ExactSheet::save(const std::filesystem::path& path) const {
    const PixelSize size = {kWidth, static_cast<int>(m_pixels.size() / kWidth)};
    return ImageTools::SaveImage(Image::fromPixels(size, m_pixels), path, "png");
}

} // namespace complexion
