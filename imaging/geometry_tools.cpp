// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/fatal.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"
#include "imaging/reading/picture_reading.h"

namespace complexion {

namespace {

Result<PixelSize> measured(const std::filesystem::path& path) {
    if (path.empty())
        fatal("the file to measure is not named");
    return measuredFile(path);
}

} // namespace

std::optional<PointSize> ImageTools::ImageActualSize(const std::filesystem::path& url) {
    const Result<PixelSize> size = measured(url);
    if (!size)
        return std::nullopt;
    return PointSize{static_cast<double>(size->width), static_cast<double>(size->height)};
}

Image ImageTools::BringImageToActualSize(const Image& image, const std::filesystem::path& url) {
    const Result<PixelSize> actual = measured(url);
    if (!actual)
        fatal("the file that an image was decoded from cannot be measured");
    return atActualSize(image, *actual);
}

Image ImageTools::ResizeImage(const Image& image, double width, double height) {
    return drawnAt(image, {width, height});
}

} // namespace complexion
