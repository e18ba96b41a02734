// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace complexion {

// Steps of ImageTools that the editor takes one after the other, with the same result for the same files, but
// with each file read or written once.

/// DecodeImage, ImageActualSize and BringImageToActualSize: the photo at one point per pixel; nothing when it
/// cannot be decoded or measured.
std::optional<Image> openPhoto(const std::filesystem::path& path);

/// SaveImage and, when that succeeds, ChangeImageExif with the photo at `source`: no other program sees the
/// file without its metadata. The result is SaveImage's. `picture` is what the file shows, as ChangeImageExif
/// has it.
bool savePhoto(const Image& image, const std::filesystem::path& path, std::string_view format,
               const std::filesystem::path& source, const Image& picture);

} // namespace complexion
