// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gain_map.h"

#include "imaging/codecs/codec.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/containers/jpeg_segments.h"
#include "imaging/image_tools.h"
#include "imaging/metadata/afcp_trailer.h"
#include "imaging/metadata/samsung_trailer.h"
#include "imaging/reading/picture_reading.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

using Kind = jpeg::Attachment::Kind;

constexpr std::int64_t kThreshold = 4; // levels of the map
constexpr int kMinRadius = 3;          // pixels of the map

/// The pixels of a gain map that correspond to changed pixels of the photo.
class TouchedPixels {
public:
    TouchedPixels(PixelSize map, PixelSize photo)
        : m_map(map), m_photo(photo), m_isTouched(static_cast<std::size_t>(map.area())) {}

    void touch(int x, int y) {
        const std::int64_t column = std::int64_t{x} * m_map.width / m_photo.width;
        const std::int64_t row = std::int64_t{y} * m_map.height / m_photo.height;
        m_isTouched[static_cast<std::size_t>(row * m_map.width + column)] = true;
    }

    /// Removes all touched pixels and returns the bounds of their connected components (8-connected).
    std::vector<PixelRect> groups() {
        std::vector<PixelRect> all;
        for (int y = 0; y < m_map.height; ++y)
            for (int x = 0; x < m_map.width; ++x)
                if (isTouched(x, y))
                    all.push_back(takeGroup(x, y));
        return all;
    }

private:
    bool isTouched(int x, int y) const {
        return x >= 0 && y >= 0 && x < m_map.width && y < m_map.height && m_isTouched[index(x, y)];
    }
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_map.width) +
               static_cast<std::size_t>(x);
    }

    PixelRect takeGroup(int x, int y) {
        PixelRect bounds;
        std::vector<PixelRect> open = {{x, y, 1, 1}};
        m_isTouched[index(x, y)] = false;
        while (!open.empty()) {
            const PixelRect pixel = open.back();
            open.pop_back();
            bounds = bounds.united(pixel);
            for (int row = pixel.y - 1; row <= pixel.y + 1; ++row)
                for (int column = pixel.x - 1; column <= pixel.x + 1; ++column)
                    if (isTouched(column, row)) {
                        m_isTouched[index(column, row)] = false;
                        open.push_back({column, row, 1, 1});
                    }
        }
        return bounds;
    }

    PixelSize m_map;
    PixelSize m_photo;
    std::vector<bool> m_isTouched;
};

/// The rectangles of the tiles that `before` and `after` do not share.
std::vector<PixelRect> unsharedTiles(const Image& before, const Image& after) {
    std::vector<PixelRect> parts;
    for (int index = 0; index < after.bandCount(); ++index) {
        const auto old = before.storedBand(index);
        const auto now = after.storedBand(index);
        const PixelRect band = after.bandRect(index);
        for (std::size_t column = 0; old != now && column < now->tiles().size(); ++column)
            if (old->tiles()[column] != now->tiles()[column])
                parts.push_back({static_cast<int>(column) * Tile::kWidth, band.y,
                                 now->tiles()[column]->block().size.width, band.height});
    }
    return parts;
}

/// The rectangles of the map to repair, in stored orientation.
std::vector<PixelRect> placesToRepair(PixelSize map, const Image& before, const Image& after,
                                      Orientation orientation) {
    const PixelSize upright = after.pixelSize();
    const PixelSize stored = uprightSize(upright, orientation); // the inverse swaps the sides likewise
    TouchedPixels touched(map, stored);
    const PixelSize tile = {Tile::kWidth, Tile::kHeight};
    std::vector<RGBA32> old(static_cast<std::size_t>(tile.area()));
    std::vector<RGBA32> now(old.size());
    for (const PixelRect part : unsharedTiles(before, after)) {
        before.read(part, old.data(), part.width);
        after.read(part, now.data(), part.width);
        for (int y = 0; y < part.height; ++y)
            for (int x = 0; x < part.width; ++x) {
                const auto i = static_cast<std::size_t>(y) * static_cast<std::size_t>(part.width) +
                               static_cast<std::size_t>(x);
                if (old[i] == now[i])
                    continue;
                const PixelRect place = storedRect({part.x + x, part.y + y, 1, 1}, upright, orientation);
                touched.touch(place.x, place.y);
            }
    }
    return touched.groups();
}

Image repaired(Image map, const std::vector<PixelRect>& places) {
    for (const PixelRect& place : places) {
        const Point center = {place.x + place.width / 2.0,
                              map.pixelSize().height - (place.y + place.height / 2.0)};
        const int radius = std::max(kMinRadius, std::max(place.width, place.height) / 2 + 2);
        if (std::optional<Image> healed = ImageTools::HealPimpleInImage(map, center, radius, kThreshold))
            map = *std::move(healed);
    }
    return map;
}

/// The coded picture of one JPEG file with the metadata segments of another, copied byte for byte.
Bytes withSegmentsOf(ByteView source, ByteView coded) {
    const auto isMetadata = [](const jpeg::Segment& segment) {
        return (segment.marker >= jpeg::marker::app(0) && segment.marker <= jpeg::marker::app(15)) ||
               segment.marker == jpeg::marker::kComment;
    };
    const jpeg::Segments written = jpeg::split(coded);
    Bytes file = {0xff, jpeg::marker::kStartOfImage};
    for (const jpeg::Segment& segment : jpeg::split(source).segments)
        if (isMetadata(segment))
            append(file, segment.whole);
    for (const jpeg::Segment& segment : written.segments)
        if (!isMetadata(segment))
            append(file, segment.whole);
    append(file, written.rest);
    return file;
}

bool overlap(const jpeg::Attachment& one, const jpeg::Attachment& other) {
    return one.bytes.data() < other.bytes.data() + other.bytes.size() &&
           other.bytes.data() < one.bytes.data() + one.bytes.size();
}

/// Whether `part` is a picture or a movie of `trailer`, which is kept without it.
bool isWithin(const jpeg::Attachment& part, const jpeg::Attachment& trailer) {
    return trailer.kind == Kind::Trailer && (part.kind == Kind::Movie || part.kind == Kind::Preview);
}

/// What is kept of an attachment of the photo that `image` is an edit of.
std::optional<Bytes> keptBytes(const jpeg::Attachment& attachment, const Image& image) {
    const auto original = image.encoderMemory().get<jpeg::OriginalFile>();
    const bool isEdit =
        original && !image.isTransformed() && original->upright().pixelSize() == image.pixelSize();
    switch (attachment.kind) {
    case Kind::Other:
        return Bytes(attachment.bytes.begin(), attachment.bytes.end());
    case Kind::Trailer:
        return jpeg::isAfcp(attachment.bytes) ? jpeg::afcpWithoutPictures(attachment.bytes)
                                              : jpeg::withoutPictures(attachment.bytes);
    case Kind::GainMap:
        return isEdit ? repairedGainMap(attachment.bytes, original->upright(), image, original->orientation())
                      : std::nullopt;
    case Kind::Preview:
    case Kind::Movie:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<Bytes> repairedGainMap(ByteView map, const Image& before, const Image& after,
                                     Orientation orientation) {
    const Result<FilePicture> read = readPictureInMemory(map);
    if (!read || read->container != Container::Jpeg || read->decoded.damage)
        return std::nullopt;
    const Image& image = read->decoded.image;
    const Image stored = image.withSize(
        {static_cast<double>(image.pixelSize().width), static_cast<double>(image.pixelSize().height)});
    const std::vector<PixelRect> places = placesToRepair(stored.pixelSize(), before, after, orientation);
    const Image result = repaired(stored, places);
    if (result.difference(stored).isEmpty())
        return Bytes(map.begin(), map.end());
    const auto original = result.encoderMemory().get<jpeg::OriginalFile>();
    if (!original || original->orientation() != Orientation::TopLeft)
        return std::nullopt;
    const Result<FileContents> coded = original->encode(result);
    return coded ? std::optional(withSegmentsOf(map, coded->joined())) : std::nullopt;
}

jpeg::KeptAttachments keptAttachments(ByteView photo, const Image& image) {
    jpeg::KeptAttachments kept;
    const std::vector<jpeg::Attachment> all = jpeg::attachments(photo);
    for (const jpeg::Attachment& attachment : all) {
        const bool isAlone = std::ranges::none_of(all, [&](const jpeg::Attachment& other) {
            return &other != &attachment && overlap(other, attachment) && !isWithin(other, attachment);
        });
        if (!isAlone)
            continue; // the file is damaged, and the contents are ambiguous
        if (std::optional<Bytes> bytes = keptBytes(attachment, image); bytes && !bytes->empty())
            kept.push_back({attachment, std::make_shared<const Bytes>(*std::move(bytes))});
    }
    return kept;
}

} // namespace complexion
