// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <filesystem>
#include <vector>

namespace complexion {

/// Writes a JPEG file that states a density in pixels per inch.
void writeJpeg(const std::filesystem::path& path, const Image& image, int dpi);

/// Writes a TIFF file of grey pages of these sizes, without any density.
void writeTiffPages(const std::filesystem::path& path, const std::vector<PixelSize>& pages);

} // namespace complexion
