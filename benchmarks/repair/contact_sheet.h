// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace complexion {

/// A picture of enlarged square views of photos, filled row by row.
class ContactSheet {
public:
    /// The colour at a position of a photo, if the sheet shows it.
    using PixelAt = std::function<std::optional<RGBA32>(int row, int column)>;

    /// `side` is that of each view, in pixels of the sheet. Every `group` views in a row are set apart from
    /// the next.
    ContactSheet(int columns, int side, int group = 1);

    /// Adds a view of `across` pixels of a photo around `middle`.
    void add(PixelPosition middle, int across, const PixelAt& pixelAt);
    void add(PixelPosition middle, int across, const Image& image);
    /// Leaves a view empty.
    void skip() { ++m_count; }

    /// Writes a PNG file.
    bool save(const std::filesystem::path& path) const;

private:
    int leftOf(int column) const;

    int m_columns;
    int m_side;
    int m_group;
    int m_count = 0;
    std::vector<RGBA32> m_pixels; // row by row
};

} // namespace complexion
