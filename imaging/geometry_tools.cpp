// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/fatal.h"
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"

namespace complexion {

std::optional<PointSize> ImageTools::ImageActualSize(const std::filesystem::path& url) {
    if (url.empty())
        fatal("the file to measure is not named");
    const Result<Bytes> file = readFile(url, isPictureFile);
    if (!file)
        return std::nullopt;
    const Result<PointSize> size = actualSizeOf(*file);
    return size ? std::optional(*size) : std::nullopt;
}

Image ImageTools::BringImageToActualSize(const Image& image, const std::filesystem::path& url) {
    const std::optional<PointSize> actual = ImageActualSize(url);
    if (!actual)
        fatal("the file that an image was decoded from cannot be measured");
    return atActualSize(image, *actual);
}

Image ImageTools::ResizeImage(const Image& image, double width, double height) {
    return drawnAt(image, {width, height});
}

} // namespace complexion
