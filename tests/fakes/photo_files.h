// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <filesystem>
#include <vector>

namespace complexion {

/// Writes a JPEG file with a density in pixels per inch.
void writeJpeg(const std::filesystem::path& path, const Image& image, int dpi);

/// Writes a TIFF file with grey pages of these sizes, without a density.
void writeTiffPages(const std::filesystem::path& path, const std::vector<PixelSize>& pages);

} // namespace complexion
