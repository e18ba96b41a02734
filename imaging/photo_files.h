// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/metadata/saving_losses.h"
#include "imaging/reading/picture_reading.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace complexion {

// Sequences of ImageTools operations as the editor calls them, with the same results, but with each file read
// or written once.

/// A photo as it was opened.
struct OpenedPhoto {
    /// At one point per pixel.
    Image image;
    /// The extension for the format of the file's content, whatever its name: "jpg", "png", "tiff", "gif" or
    /// "bmp".
    std::string_view extension = {}; // NOLINT(readability-redundant-member-init): may be left out
    /// Why parts of the picture are missing, if the file is truncated or damaged; nothing for a complete one.
    std::optional<Error> damage = {}; // NOLINT(readability-redundant-member-init)
    /// The parts of the photo that saving will lose.
    std::vector<SavingLoss> losses = {}; // NOLINT(readability-redundant-member-init)
};

/// DecodeImage, ImageActualSize and BringImageToActualSize. Fails if the file cannot be decoded or measured,
/// and with Cancelled if `progress` ended it.
Result<OpenedPhoto> openPhoto(const std::filesystem::path& path, const ReadingProgress& progress = {},
                              const PreviewListener& preview = {});

/// Why the file at `path` cannot be opened, if its measures show it, which takes less time than opening it.
std::optional<Error> obstacleToOpening(const std::filesystem::path& path);

/// SaveImage of the upright `image`, turned for storage with the CarriedOrientation of the photo at `source`,
/// followed on success by ChangeImageExif with that photo. The file never exists without its
/// metadata, and is readable only by users who can read the photo. Returns SaveImage's result; false too if
/// memory for the metadata runs out.
bool savePhoto(const Image& image, const std::filesystem::path& path, std::string_view format,
               const std::filesystem::path& source);

/// Whether a file of type `format` can hold pictures with sides of this length. savePhoto writes none
/// otherwise.
bool canHold(std::string_view format, PixelSize size);

} // namespace complexion
