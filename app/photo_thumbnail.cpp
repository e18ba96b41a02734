// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/photo_thumbnail.h"

#include "imaging/base/resample.h"
#include "imaging/reading/picture_reading.h"
#include "imaging/reading/thumbnail_reading.h"
#include "imaging/screen_colors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace complexion {

namespace {

constexpr std::int64_t kMaxPixels = 64'000'000; // decoded, they take a quarter of a gigabyte

PixelSize fitted(PixelSize picture, int side) {
    const double scale = std::min(1.0, static_cast<double>(side) / std::max(picture.width, picture.height));
    const auto length = [scale](int pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * scale)));
    };
    return {length(picture.width), length(picture.height)};
}

/// Whether `image` need not be enlarged.
bool isEnough(const Image& image, int side) {
    return std::max(image.pixelSize().width, image.pixelSize().height) >= side;
}

/// `image` in the screen's colours, fitted into a square.
Image reduced(const Image& image, int side) {
    const Image small = resampled(halvedTo(image, 2 * side), fitted(image.pixelSize(), side));
    const auto transform = screenTransform(image.profile());
    return transform ? small.transformed(transform) : small;
}

/// All of `image` in the middle of a transparent square.
QImage inSquare(const Image& image, int side) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> row(static_cast<std::size_t>(size.width));
    QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    for (int y = 0; y < size.height; ++y) {
        image.read({0, y, size.width, 1}, row.data(), size.width);
        auto* const line = reinterpret_cast<QRgb*>(square.scanLine(y + (side - size.height) / 2));
        std::ranges::transform(row, line + (side - size.width) / 2, [](RGBA32 pixel) {
            return qRgba(pixel.red(), pixel.green(), pixel.blue(), pixel.alpha());
        });
    }
    return square;
}

} // namespace

QImage photoThumbnail(const std::filesystem::path& path, int side, const std::function<bool()>& isWanted) {
    const ReadingProgress progress = [&isWanted](double) { return isWanted(); };
    if (!isWanted())
        return {};
    if (const Result<Image> embedded = readEmbeddedThumbnail(path, progress);
        embedded && isEnough(*embedded, side))
        return inSquare(reduced(*embedded, side), side);
    const Result<PixelSize> size = measuredFile(path);
    if (!size || size->area() > kMaxPixels || !isWanted())
        return {};
    const Result<FilePicture> picture = readPictureFile(path, ReadingPurpose::Look, progress);
    if (!picture || !picture->decoded.image.hasPixels())
        return {};
    return inSquare(reduced(picture->decoded.image, side), side);
}

} // namespace complexion
