// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/repair/exact_sheet.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr int kScale = 5;
constexpr int kView = 64; // side in pixels of the photo
constexpr int kViews = 4;
constexpr int kAmplification = 8;
constexpr int kGrey = 128;

RGBA32 amplifiedDifference(RGBA32 painted, RGBA32 saved) {
    const auto component = [](int before, int after) {
        return static_cast<std::uint8_t>(std::clamp(kGrey + kAmplification * (after - before), 0, 255));
    };
    return {component(painted.red(), saved.red()), component(painted.green(), saved.green()),
            component(painted.blue(), saved.blue()), 255};
}

} // namespace

ExactSheet::ExactSheet() : m_sheet(kViews, kScale * kView) {}

void ExactSheet::add(const SavedRepair& repair, PixelPosition place) {
    const int mcusAcross = (repair.size.width + repair.mcu.width - 1) / repair.mcu.width;
    for (int view = 0; view < kViews; ++view)
        m_sheet.add(place, kView, [&](int row, int column) -> std::optional<RGBA32> {
            if (row < 0 || column < 0 || row >= repair.size.height || column >= repair.size.width)
                return std::nullopt;
            const auto at = static_cast<std::size_t>(row) * static_cast<std::size_t>(repair.size.width) +
                            static_cast<std::size_t>(column);
            const auto mcu =
                static_cast<std::size_t>(row / repair.mcu.height * mcusAcross + column / repair.mcu.width);
            switch (view) {
            case 0:
                return repair.photo[at];
            case 1:
                return repair.painted[at];
            case 2:
                return repair.saved[at];
            default:
                if (!repair.touched[mcu])
                    return std::nullopt;
                return amplifiedDifference(repair.painted[at], repair.saved[at]);
            }
        });
}

} // namespace complexion
