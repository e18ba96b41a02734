// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/repair/contact_sheet.h"

#include "imaging/image_tools.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr int kGap = 4;
constexpr int kGroupGap = 12; // in addition, between groups
constexpr RGBA32 kBackground{38, 38, 38, 255};

} // namespace

ContactSheet::ContactSheet(int columns, int side, int group)
    : m_columns(columns), m_side(side), m_group(group) {}

int ContactSheet::leftOf(int column) const {
    return column * (m_side + kGap) + (m_group > 1 ? column / m_group * kGroupGap : 0);
}

void ContactSheet::add(PixelPosition middle, int across, const PixelAt& pixelAt) {
    const int left = leftOf(m_count % m_columns);
    const int top = m_count / m_columns * (m_side + kGap);
    ++m_count;
    const auto width = static_cast<std::size_t>(leftOf(m_columns));
    m_pixels.resize(std::max(m_pixels.size(), width * static_cast<std::size_t>(top + m_side + kGap)),
                    kBackground);
    for (int y = 0; y < m_side; ++y)
        for (int x = 0; x < m_side; ++x) {
            const int row = static_cast<int>(middle.row) - across / 2 + y * across / m_side;
            const int column = static_cast<int>(middle.column) - across / 2 + x * across / m_side;
            if (const std::optional<RGBA32> pixel = pixelAt(row, column))
                m_pixels[static_cast<std::size_t>(top + y) * width + static_cast<std::size_t>(left + x)] =
                    *pixel;
        }
}

void ContactSheet::add(PixelPosition middle, int across, const Image& image) {
    const PixelSize size = image.pixelSize();
    add(middle, across, [&](int row, int column) -> std::optional<RGBA32> {
        if (row < 0 || column < 0 || row >= size.height || column >= size.width)
            return std::nullopt;
        return image.pixel(row, column);
    });
}

bool ContactSheet::save(const std::filesystem::path& path) const {
    const int width = leftOf(m_columns);
    const PixelSize size = {width, static_cast<int>(m_pixels.size()) / width};
    return ImageTools::SaveImage(Image::fromPixels(size, m_pixels), path, "png");
}

} // namespace complexion
