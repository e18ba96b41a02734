// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/hdr_photos.h"

#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

namespace complexion {

namespace {

using namespace std::string_literals;

constexpr int kScale = 4;

std::string xmpSegment(const std::string& description) {
    return jpegSegmentOf(0xe1, "http://ns.adobe.com/xap/1.0/\0"s +
                                   "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                                   "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">" +
                                   description + "</rdf:RDF></x:xmpmeta>");
}

std::string isoSegment(const std::string& data) {
    return jpegSegmentOf(0xe2, "urn:iso:std:iso:ts:21496:-1\0"s + data);
}

std::string mapOf(const Image& photo, const HdrPhotoRecipe& recipe) {
    const PixelSize size = {photo.pixelSize().width / kScale, photo.pixelSize().height / kScale};
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const RGBA32 pixel = photo.pixel(y * kScale + kScale / 2, x * kScale + kScale / 2);
            for (int c = 0; c < recipe.mapComponents; ++c)
                samples.push_back(
                    static_cast<std::uint8_t>(60 + pixel.green() / 2 + (x * 5 + y * 3 + c) % 3));
        }
    const Bytes file = jpegFile({.size = size,
                                 .components = recipe.mapComponents,
                                 .samples = recipe.mapComponents == 1 ? JCS_GRAYSCALE : JCS_RGB,
                                 .quality = 95},
                                samples);
    const std::string description =
        recipe.kind == HdrKind::Directory
            ? "<rdf:Description xmlns:hdrgm=\"http://ns.adobe.com/hdr-gain-map/1.0/\" hdrgm:Version=\"1.0\" "
              "hdrgm:GainMapMax=\"2.3\"/>"
            : "<rdf:Description xmlns:aux=\"http://ns.example.com/pixeldatainfo/1.0/\" "
              "aux:AuxiliaryImageType=\"urn:com:example:photo:2020:aux:hdrgainmap\"/>";
    const std::string iso = recipe.kind == HdrKind::Directory ? isoSegment(std::string(62, 'm')) : "";
    return withSegments({file.begin(), file.end()}, xmpSegment(description) + iso);
}

std::string directoryXmp(std::size_t mapLength, std::size_t movieLength) {
    std::string items =
        "<rdf:li rdf:parseType=\"Resource\"><Container:Item Item:Mime=\"image/jpeg\" "
        "Item:Semantic=\"Primary\"/></rdf:li><rdf:li rdf:parseType=\"Resource\"><Container:Item "
        "Item:Mime=\"image/jpeg\" Item:Semantic=\"GainMap\" Item:Length=\"" +
        std::to_string(mapLength) + "\"/></rdf:li>";
    std::string motion;
    if (movieLength > 0) {
        items += "<rdf:li rdf:parseType=\"Resource\"><Container:Item Item:Mime=\"video/mp4\" "
                 "Item:Semantic=\"MotionPhoto\" Item:Length=\"" +
                 std::to_string(movieLength) + "\"/></rdf:li>";
        motion = " GCamera:MotionPhoto=\"1\" GCamera:MotionPhotoVersion=\"1\" GCamera:MicroVideoOffset=\"" +
                 std::to_string(movieLength) + "\"";
    }
    return xmpSegment("<rdf:Description xmlns:Container=\"http://ns.google.com/photos/1.0/container/\" "
                      "xmlns:Item=\"http://ns.google.com/photos/1.0/container/item/\" "
                      "xmlns:GCamera=\"http://ns.google.com/photos/1.0/camera/\" "
                      "xmlns:hdrgm=\"http://ns.adobe.com/hdr-gain-map/1.0/\" hdrgm:Version=\"1.0\"" +
                      motion + "><Container:Directory><rdf:Seq>" + items +
                      "</rdf:Seq></Container:Directory></rdf:Description>");
}

/// A picture that follows the primary one.
struct Entry {
    std::size_t begin; // in the file
    std::size_t size;
};

/// The multi-picture index segment whose structure begins at offset `header` in the file.
std::string indexSegment(bool isBig, std::size_t header, std::size_t pictureSize,
                         const std::vector<Entry>& entries) {
    const auto number = [isBig](std::uint64_t value, int length) {
        return isBig ? bigNumber(value, length) : littleNumber(value, length);
    };
    constexpr std::size_t kTable = 8 + 2 + 3 * 12 + 4;
    const std::size_t count = entries.size() + 1;
    std::string structure = (isBig ? "MM" : "II") + number(42, 2) + number(8, 4) + number(3, 2);
    structure += number(0xB000, 2) + number(7, 2) + number(4, 4) + "0100";
    structure += number(0xB001, 2) + number(4, 2) + number(1, 4) + number(count, 4);
    structure += number(0xB002, 2) + number(7, 2) + number(16 * count, 4) + number(kTable, 4) + number(0, 4);
    structure += number(0x030000, 4) + number(pictureSize, 4) + number(0, 4) + number(0, 4);
    for (const Entry& entry : entries)
        structure += number(0, 4) + number(entry.size, 4) + number(entry.begin - header, 4) + number(0, 4);
    return jpegSegmentOf(0xe2, "MPF\0"s + structure);
}

} // namespace

HdrPhoto hdrPhoto(const Image& photo, const HdrPhotoRecipe& recipe) {
    const std::string map = mapOf(photo, recipe);
    const std::string preview = recipe.hasPreview ? encodedAs(kJpegCodec, filled({32, 24}, kSkin)) : "";
    const std::string movie = recipe.hasMovie ? bigNumber(24, 4) + "ftypmp42" + std::string(500, 'm') : "";
    const Bytes coded = jpegFile({.size = photo.pixelSize(), .quality = 92}, rgbSamples(photo));
    std::string segments = jpegSegmentOf(0xe1, "Exif\0\0"s + cameraExif(recipe.orientation).bytes());
    if (recipe.kind == HdrKind::Directory)
        segments += directoryXmp(map.size(), movie.size()) + isoSegment("\0\0\0\0"s);
    const std::size_t indexLength =
        indexSegment(true, 0, 0, std::vector<Entry>(preview.empty() ? 1 : 2)).size();
    constexpr std::size_t kSignature = 2 + 2 + 4; // marker, length and "MPF\0"
    const std::size_t header = 2 + segments.size() + kSignature;
    const std::string plain = withSegments({coded.begin(), coded.end()}, segments, false);
    const std::size_t end = plain.size() + indexLength;
    std::vector<Entry> entries = {{end, map.size()}};
    if (!preview.empty())
        entries.push_back({end + map.size(), preview.size()});
    const std::string index = indexSegment(recipe.kind == HdrKind::Directory, header, end, entries);
    const std::string picture = withSegments({coded.begin(), coded.end()}, segments + index, false);
    return {.file = picture + map + preview + movie, .map = map};
}

} // namespace complexion
