// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include <filesystem>
#include <functional>

namespace complexion {

/// The photo in the file at `path`, fitted into a transparent square of `side` pixels, in sRGB. Null if it
/// cannot be decoded, or `isWanted`, called now and then, returned false. A confined child process decodes
/// the thumbnail in the file if that has `side` pixels, or else the photo, unless it has more than 64
/// megapixels. For any thread.
QImage photoThumbnail(const std::filesystem::path& path, int side, const std::function<bool()>& isWanted);

} // namespace complexion
