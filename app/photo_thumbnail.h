// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include <filesystem>
#include <functional>

namespace complexion {

/// The photo in the file at `path`, fitted into a transparent square of `side` pixels, in sRGB. Null if it
/// cannot be decoded, has more than 64 megapixels, or `isWanted`, called now and then, returned false. Takes
/// as long as decoding the photo does, in a confined child process; for any thread.
QImage photoThumbnail(const std::filesystem::path& path, int side, const std::function<bool()>& isWanted);

} // namespace complexion
