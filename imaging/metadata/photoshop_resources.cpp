// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/photoshop_resources.h"

#include "imaging/metadata/exif_thumbnail.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace complexion::photoshop {

namespace {

// Photoshop File Formats Specification, "Image Resource Blocks".
constexpr unsigned kIptcResource = 0x0404;
constexpr unsigned kOldThumbnailResource = 0x0409;
constexpr unsigned kThumbnailResource = 0x040c;
constexpr unsigned kProfileResource = 0x040f;
constexpr unsigned kExifResource = 0x0422;
constexpr unsigned kXmpResource = 0x0424;

constexpr std::array<std::string_view, 5> kSignatures = {"8BIM", "MeSa", "AgHg", "PHUT", "DCSR"};
constexpr std::size_t kNameOffset = 6;

// IIM version 4: tag marker, record, data set and a length of two bytes. Data sets 2:200 to 2:202 are a
// preview.
constexpr std::uint8_t kIptcMarker = 0x1c;
constexpr std::size_t kIptcHeaderLength = 5;
constexpr unsigned kLongLength = 0x8000;

struct Resource {
    unsigned id = 0;
    ByteView header; // signature, number and name
    ByteView data;
    ByteView whole;
};

std::uint64_t bigEndian(ByteView bytes, std::uint64_t offset, std::size_t length) {
    return numberAt(bytes, offset, length, ByteOrder::BigEndian);
}

/// The resource at the start of `bytes`.
std::optional<Resource> firstResource(ByteView bytes) {
    if (bytes.size() < kNameOffset + 2 ||
        std::ranges::none_of(kSignatures,
                             [bytes](std::string_view signature) { return startsWith(bytes, signature); }))
        return std::nullopt;
    Resource resource;
    resource.id = static_cast<unsigned>(bigEndian(bytes, 4, 2));
    const std::size_t nameLength = (std::size_t{bytes[kNameOffset]} + 2) / 2 * 2;
    const std::size_t headerLength = kNameOffset + nameLength;
    if (bytes.size() < headerLength + 4)
        return std::nullopt;
    const std::uint64_t length = bigEndian(bytes, headerLength, 4);
    resource.header = bytes.first(headerLength);
    resource.data = slice(bytes, headerLength + 4, length);
    if (resource.data.size() < length)
        return std::nullopt;
    // Padded to an even length; many files omit the padding of the last resource.
    resource.whole = slice(bytes, 0, headerLength + 4 + length + length % 2);
    return resource;
}

/// Calls `use` for every resource; returns the remaining bytes that are not one.
template <class Use>
ByteView forEachResource(ByteView resources, Use use) {
    while (const auto resource = firstResource(resources)) {
        use(*resource);
        resources = resources.subspan(resource->whole.size());
    }
    return resources;
}

void appendResource(Bytes& to, ByteView header, ByteView data) {
    append(to, header);
    appendNumber(to, 4, ByteOrder::BigEndian, data.size());
    append(to, data);
    if (data.size() % 2 != 0)
        to.push_back(0);
}

void appendCarried(Bytes& to, const Resource& resource) {
    switch (resource.id) {
    case kOldThumbnailResource:
    case kThumbnailResource:
    case kProfileResource:
        return;
    case kExifResource: {
        Bytes exif(resource.data.begin(), resource.data.end());
        exif::removeThumbnail(exif);
        return appendResource(to, resource.header, exif);
    }
    case kXmpResource:
        return appendResource(to, resource.header, xmp::toCarry(resource.data));
    case kIptcResource: {
        const Bytes iptc = iptcToCarry(resource.data);
        if (iptc.size() == resource.data.size())
            break;
        return appendResource(to, resource.header, iptc);
    }
    default:
        break;
    }
    append(to, resource.whole);
}

/// The length of the IPTC data set at the start of `iptc`; 0 if there is none.
std::size_t firstDataSetLength(ByteView iptc) {
    if (iptc.size() < kIptcHeaderLength || iptc[0] != kIptcMarker)
        return 0;
    std::uint64_t length = bigEndian(iptc, 3, 2);
    std::uint64_t header = kIptcHeaderLength;
    if (length >= kLongLength) {
        const std::size_t lengthLength = length - kLongLength;
        if (lengthLength > 4)
            return 0;
        length = bigEndian(iptc, kIptcHeaderLength, lengthLength);
        header += lengthLength;
    }
    return header + length <= iptc.size() ? header + length : 0;
}

} // namespace

Bytes resourcesToCarry(ByteView resources) {
    Bytes carried;
    const ByteView rest =
        forEachResource(resources, [&](const Resource& resource) { appendCarried(carried, resource); });
    append(carried, rest);
    return carried;
}

Bytes iptcOf(ByteView resources) {
    Bytes iptc;
    forEachResource(resources, [&](const Resource& resource) {
        if (resource.id == kIptcResource)
            append(iptc, resource.data);
    });
    return iptc;
}

Bytes withoutIptc(ByteView resources) {
    Bytes others;
    forEachResource(resources, [&](const Resource& resource) {
        if (resource.id != kIptcResource)
            append(others, resource.whole);
    });
    return others;
}

Bytes withIptc(ByteView resources, ByteView iptc) {
    Bytes all;
    if (!iptc.empty()) {
        constexpr std::array<std::uint8_t, 8> kHeader = {'8', 'B', 'I', 'M', 0x04, 0x04, 0, 0};
        appendResource(all, kHeader, iptc);
    }
    append(all, resources);
    return all;
}

Bytes iptcToCarry(ByteView iptc) {
    Bytes carried;
    while (const std::size_t length = firstDataSetLength(iptc)) {
        const bool isPreview = iptc[1] == 2 && iptc[2] >= 200 && iptc[2] <= 202;
        if (!isPreview)
            append(carried, iptc.first(length));
        iptc = iptc.subspan(length);
    }
    append(carried, iptc);
    return carried;
}

} // namespace complexion::photoshop
