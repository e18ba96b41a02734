// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/checked.h"
#include "imaging/base/picture_limits.h"
#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"

#include <cmath>

namespace complexion {

namespace {

int pixelsFor(double points) {
    const std::int64_t pixels = truncateToInt64(std::ceil(points), "an image's size is out of range");
    if (pixels < 0 || pixels > kLargestArea)
        fatal("an image's size is out of range");
    return static_cast<int>(pixels);
}

} // namespace

Result<PointSize> actualSizeOf(ByteView file) {
    const Codec* codec = codecForContent(file);
    const Result<std::vector<PixelSize>> pictures = codec->measure(file);
    if (!pictures)
        return pictures.error();
    PointSize size;
    for (const PixelSize picture : *pictures) {
        size.width = std::max(size.width, static_cast<double>(picture.width));
        size.height = std::max(size.height, static_cast<double>(picture.height));
    }
    // The longest sides of several pictures may make one that is larger than each.
    if (!pictures->empty() &&
        !isDecodableSize(static_cast<std::int64_t>(size.width), static_cast<std::int64_t>(size.height)))
        return Error{"the pictures' sides are too long together", ErrorKind::TooLarge};
    return size;
}

Image atActualSize(const Image& image, PointSize size) {
    if (size == image.size())
        return image;
    return resampled(image, {pixelsFor(size.width), pixelsFor(size.height)}).withSize(size);
}

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
    return resampled(image, {pixelsFor(width), pixelsFor(height)}).withSize({width, height});
}

} // namespace complexion
