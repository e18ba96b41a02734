// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_file_steps.h"

#include "imaging/base/checked.h"
#include "imaging/base/diagnostics.h"
#include "imaging/base/no_throw.h"
#include "imaging/base/picture_limits.h"
#include "imaging/base/resample.h"
#include "imaging/codecs/codec.h"
#include "imaging/containers/container.h"
#include "imaging/metadata/carrying.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

constexpr const char* kOutOfRange = "an image's size is out of range";

int pixelsFor(double points) {
    const std::int64_t pixels = truncateToInt64(std::ceil(points), kOutOfRange);
    if (pixels < 0 || pixels > kMaxArea)
        fatal(kOutOfRange);
    return static_cast<int>(pixels);
}

} // namespace

Result<Bytes> readPicture(const std::filesystem::path& path) {
    return withoutThrowing([&]() -> Result<Bytes> {
        return readFile(path, [](ByteView start) { return containerOf(start).has_value(); });
    });
}

Orientation carriedOrientationOf(const Result<Bytes>& photo, std::string_view format) {
    const Codec* codec = codecForExtension(format);
    return photo && codec ? carriedOrientation(*photo, codec->container) : Orientation::TopLeft;
}

Result<FileContents> encodedPicture(const Image& image, std::string_view format, Orientation orientation) {
    const Image raster = rasterOf(image);
    const Codec* codec = codecForExtension(format);
    if (!codec)
        return Error{"a file type that is not known", ErrorKind::CannotWrite};
    return codec->encodeTurned(raster, orientation);
}

Result<FileContents> encodedResult(const Image& image, std::string_view format, Orientation orientation,
                                   const Result<Bytes>& photo) {
    const Codec* codec = codecForExtension(format);
    if (!codec || !codec->encodeResult || !photo)
        return encodedPicture(image, format, orientation);
    return codec->encodeResult(
        rasterOf(image), {.orientation = orientation, .photo = *photo, .order = carriedByteOrder(*photo)});
}

bool countsAsSaved(const Error& error) {
    return error.kind == ErrorKind::FormatCannotHold;
}

Image drawnAt(const Image& image, PointSize size) {
    return resampled(image, {pixelsFor(size.width), pixelsFor(size.height)}).withSize(size);
}

Image atActualSize(const Image& image, PixelSize size) {
    const PointSize points{static_cast<double>(size.width), static_cast<double>(size.height)};
    return points == image.size() ? image : drawnAt(image, points);
}

Image rasterOf(const Image& image) {
    const std::int64_t width = truncateToInt64(image.size().width, kOutOfRange);
    const std::int64_t height = truncateToInt64(image.size().height, kOutOfRange);
    if (!isDecodableSize(width, height) || !image.hasPixels())
        fatal("no bitmap of this size can be made");
    return resampled(image, {static_cast<int>(width), static_cast<int>(height)});
}

void carryCreationDate(const std::filesystem::path& path, CreationDate date) {
    // The file is complete by now; a failure here does not invalidate it.
    const Result<Done> carried = withoutThrowing([&]() -> Result<Done> {
        if (setCreationDate(path, date))
            return Done();
        return Error{"no place for a creation date", ErrorKind::CannotWrite};
    });
    if (!carried)
        printLine("ERROR");
}

} // namespace complexion
