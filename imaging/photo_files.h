// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/saving_losses.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace complexion {

// Steps of ImageTools that the editor takes one after the other, with the same result for the same files, but
// with each file read or written once.

/// A photo as it was opened.
struct OpenedPhoto {
    /// At one point per pixel.
    Image image;
    /// The extension of the format that the file has by its content, whatever its name: "jpg", "png", "tiff",
    /// "gif" or "bmp".
    std::string_view extension = {};
    /// What is wrong with a file that was truncated or damaged, of whose picture parts are missing; nothing
    /// for a whole one.
    std::optional<Error> damage = {};
    /// What of the photo a result that is saved of it will not have.
    std::vector<SavingLoss> losses = {};
};

/// DecodeImage, ImageActualSize and BringImageToActualSize; an error when the file cannot be decoded or
/// measured.
Result<OpenedPhoto> openPhoto(const std::filesystem::path& path);

/// SaveImage of `image`, which is upright, with its pixels turned as CarriedOrientation says of the photo at
/// `source`, and, when that succeeds, ChangeImageExif with that photo: no other program sees the file without
/// its metadata, and nobody can read it who cannot read the photo. The result is SaveImage's; false too when
/// memory is lacking for the metadata.
bool savePhoto(const Image& image, const std::filesystem::path& path, std::string_view format,
               const std::filesystem::path& source);

} // namespace complexion
