// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/png_metadata.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/png_text.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/exif_thumbnail.h"
#include "imaging/metadata/photoshop_resources.h"
#include "imaging/metadata/text_encoding.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <array>

namespace complexion::png {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kExifChunk = "eXIf";
constexpr std::string_view kDensityChunk = "pHYs";
constexpr std::string_view kCodePointsChunk = "cICP";
constexpr std::string_view kXmpKeyword = "XML:com.adobe.xmp";
// The signature of XMP segments in JPEG files, which some software keeps.
constexpr std::string_view kXmpStart = "http://ns.adobe.com/xap/1.0/\0"sv;

// The number of bytes that a new thumbnail may add to an EXIF block.
constexpr std::size_t kRoomForThumbnail = 65536;

/// Whether a chunk describes the picture rather than the coding of its pixels. For unknown chunks the name
/// decides: a lower-case last letter means that it is safe to copy when the pixels change (PNG, "Safe-to-copy
/// bit").
bool isMetadata(std::string_view name) {
    constexpr std::array kCarried = {"tIME"sv, "oFFs"sv, "pCAL"sv, "sCAL"sv};
    // HDR mastering and light level chunks under their former names.
    constexpr std::array kNotCarried = {"cLLi"sv, "mDCv"sv};
    const auto contains = [name](const auto& names) { return std::ranges::find(names, name) != names.end(); };
    const auto isLower = [name](std::size_t letter) { return name[letter] >= 'a' && name[letter] <= 'z'; };
    return isLower(0) && (contains(kCarried) || (isLower(3) && !contains(kNotCarried)));
}

/// Whether the samples are red, green and blue: then their space is still that of the source's code points.
bool isColor(ByteView file) {
    constexpr std::size_t kColorType = 9; // offset in the header chunk
    constexpr unsigned kColorBit = 2;
    const auto header = findChunk(file, "IHDR");
    return header && header->size() > kColorType && ((*header)[kColorType] & kColorBit) != 0;
}

ByteView withoutStart(ByteView bytes, std::string_view start) {
    return startsWith(bytes, start) ? bytes.subspan(start.size()) : bytes;
}

bool isPhotoshopProfile(const RawProfile& profile) {
    return profile.kind == "8bim" || profile.kind == "iptc";
}

Bytes exifChunk(Bytes exif, ThumbnailMaker& maker) {
    if (exif.empty())
        return {};
    exif::renewThumbnail(exif, maker, exif.size() + kRoomForThumbnail);
    return png::chunk(kExifChunk, exif);
}

Bytes carriedProfile(const Chunk& chunk, const RawProfile& profile) {
    // EXIF is written as an eXIf chunk; the colour profile of the source's pixels is not carried.
    if (profile.isExif() || profile.kind == "icc" || profile.kind == "icm")
        return {};
    Bytes carried = profile.bytes;
    if (isPhotoshopProfile(profile))
        carried = startsWith(carried, "8BIM") ? photoshop::resourcesToCarry(carried)
                                              : photoshop::iptcToCarry(carried);
    else if (profile.isXmp())
        carried = xmp::toCarry(carried);
    if (carried == profile.bytes)
        return {chunk.whole.begin(), chunk.whole.end()};
    return rawProfileChunk(profile.kind, carried);
}

/// A metadata chunk as it is carried to the new file.
Bytes carriedChunk(const Chunk& chunk, std::size_t& budget) {
    if (const auto text = readText(chunk, budget)) {
        if (const auto profile = rawProfile(*text))
            return carriedProfile(chunk, *profile);
        if (text->keyword == kXmpKeyword) {
            const Bytes xmp = xmp::toCarry(bytesOf(text->text));
            if (textOf(xmp) != text->text)
                return internationalTextChunk(kXmpKeyword, textOf(xmp));
        }
    }
    return {chunk.whole.begin(), chunk.whole.end()};
}

/// `written`, a file or its start up to the first IDAT chunk, with its metadata chunks replaced by
/// `metadata`, placed before the pixels.
Result<FileContents> withChunks(ByteView written, ByteView metadata, bool hasDensity) {
    Bytes file(kSignature.begin(), kSignature.end());
    file.reserve(written.size() + metadata.size());
    bool isInserted = false;
    bool isWhole = false;
    for (const Chunk& chunk : split(written)) {
        isWhole = chunk.name == "IEND";
        if (chunk.name == "IDAT" && !isInserted) {
            append(file, metadata);
            isInserted = true;
            isWhole = chunk.whole.data() + chunk.whole.size() == written.data() + written.size();
        }
        if (!isMetadata(chunk.name) || (chunk.name == kDensityChunk && !hasDensity))
            append(file, chunk.whole);
    }
    if (!isInserted || !isWhole)
        return Error{"the PNG file to give metadata to is damaged"};
    FileContents contents;
    contents.append(std::move(file));
    return contents;
}

std::optional<Resolution> resolutionOf(const Chunk& density) {
    const auto number = [&density](std::size_t offset, std::size_t length) {
        return static_cast<std::uint32_t>(numberAt(density.data, offset, length, ByteOrder::BigEndian));
    };
    const std::uint32_t across = number(0, 4);
    const std::uint32_t down = number(4, 4);
    if (across == 0 || down == 0)
        return std::nullopt;
    if (number(8, 1) != 1)
        return Resolution{static_cast<double>(across), static_cast<double>(down), Resolution::Unit::None};
    return resolutionOfPixelsPerMetre(across, down);
}

Bytes densityChunk(const Resolution& resolution) {
    Bytes data;
    for (const double value : {resolution.across, resolution.down})
        appendNumber(data, 4, ByteOrder::BigEndian, pixelsPerMetre(value, resolution.unit));
    data.push_back(resolution.unit == Resolution::Unit::None ? 0 : 1);
    return png::chunk(kDensityChunk, data);
}

void readProfile(const RawProfile& profile, PictureMetadata& metadata) {
    if (profile.isXmp() && metadata.xmp.empty()) {
        const ByteView xmp = withoutStart(profile.bytes, kXmpStart);
        metadata.xmp.assign(xmp.begin(), xmp.end());
    } else if (isPhotoshopProfile(profile) && startsWith(profile.bytes, "8BIM")) {
        append(metadata.iptc, photoshop::iptcOf(profile.bytes));
        append(metadata.photoshop, photoshop::withoutIptc(profile.bytes));
    } else if (profile.kind == "iptc") {
        append(metadata.iptc, profile.bytes);
    }
}

} // namespace

PictureMetadata readMetadata(ByteView file) {
    PictureMetadata metadata;
    const std::vector<Chunk> chunks = split(file);
    metadata.exif = png::exif(chunks);
    std::size_t budget = kMaxInflatedText;
    for (const Chunk& chunk : chunks) {
        if (chunk.name == kDensityChunk)
            metadata.resolution = resolutionOf(chunk);
        const auto text = readText(chunk, budget);
        if (!text)
            continue;
        if (const auto profile = rawProfile(*text))
            readProfile(*profile, metadata);
        else if (text->keyword == kXmpKeyword)
            metadata.xmp.assign(text->text.begin(), text->text.end());
        else
            metadata.notes.push_back(
                {utf8FromLatin1(text->keyword), text->isUtf8 ? text->text : utf8FromLatin1(text->text)});
    }
    return metadata;
}

Bytes exifFor(const PictureMetadata& metadata) {
    return tiff::readHeader(metadata.exif) ? metadata.exif : Bytes();
}

Result<FileContents> withChunksOf(ByteView source, ByteView written, ThumbnailMaker& maker) {
    const std::vector<Chunk> chunks = split(source);
    Bytes metadata = exifChunk(png::exif(chunks), maker);
    bool hasDensity = false;
    std::size_t budget = kMaxInflatedText;
    for (const Chunk& chunk : chunks) {
        const bool isSecondDensity = chunk.name == kDensityChunk && hasDensity;
        if (!isMetadata(chunk.name) || chunk.name == kExifChunk || isSecondDensity)
            continue;
        hasDensity = hasDensity || chunk.name == kDensityChunk;
        append(metadata, carriedChunk(chunk, budget));
    }
    if (const auto codes = findChunk(source, kCodePointsChunk); codes && isColor(source) && isColor(written))
        append(metadata, png::chunk(kCodePointsChunk, *codes));
    return withChunks(written, metadata, true); // a photo without a density gets none
}

Result<FileContents> withMetadata(const PictureMetadata& source, ByteView written, ThumbnailMaker& maker) {
    Bytes metadata = exifChunk(exifFor(source), maker);
    if (source.resolution)
        append(metadata, densityChunk(*source.resolution));
    if (!source.xmp.empty())
        append(metadata, internationalTextChunk(kXmpKeyword, textOf(xmp::toCarry(source.xmp))));
    if (const Bytes resources =
            photoshop::resourcesToCarry(photoshop::withIptc(source.photoshop, source.iptc));
        !resources.empty())
        append(metadata, rawProfileChunk("iptc", resources));
    for (const TextNote& note : source.notes)
        append(metadata, textChunk(note.keyword, note.text));
    return withChunks(written, metadata, source.resolution.has_value());
}

} // namespace complexion::png
