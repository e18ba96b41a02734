// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace complexion {

// Steps of ImageTools that the editor takes one after the other, with the same result for the same files, but
// with each file read or written once.

/// DecodeImage, ImageActualSize and BringImageToActualSize: the photo at one point per pixel; nothing when it
/// cannot be decoded or measured.
std::optional<Image> openPhoto(const std::filesystem::path& path);

/// SaveImage of `image`, which is upright, with its pixels turned as CarriedOrientation says of the photo at
/// `source`, and, when that succeeds, ChangeImageExif with that photo: no other program sees the file without
/// its metadata. The result is SaveImage's.
bool savePhoto(const Image& image, const std::filesystem::path& path, std::string_view format,
               const std::filesystem::path& source);

} // namespace complexion
