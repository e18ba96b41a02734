// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "benchmarks/repair/contact_sheet.h"

#include <filesystem>
#include <vector>

namespace complexion {

/// One repair of a photo, as stored: the pixels of the photo, those that were painted, and those of the saved
/// file; and which of the MCUs, counted row by row, the repair touched.
struct SavedRepair {
    PixelSize size;
    PixelSize mcu;
    const std::vector<RGBA32>& photo;
    const std::vector<RGBA32>& painted;
    const std::vector<RGBA32>& saved;
    const std::vector<bool>& touched;
};

/// A contact sheet of saved repairs at 500 %: the photo, what was painted, what was saved, and eight times
/// the difference of those two on grey where MCUs were touched.
class ExactSheet {
public:
    ExactSheet();
    /// Adds a row for the surroundings of a pixel.
    void add(const SavedRepair& repair, PixelPosition place);
    /// Writes a PNG file.
    bool save(const std::filesystem::path& path) const { return m_sheet.save(path); }

private:
    ContactSheet m_sheet;
};

} // namespace complexion
