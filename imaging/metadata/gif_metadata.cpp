// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/gif_metadata.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/gif_blocks.h"
#include "imaging/metadata/photoshop_resources.h"
#include "imaging/metadata/text_encoding.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

// XMP is not stored in sub-blocks. A trailer of descending numbers leads any reader of sub-blocks to the end
// (XMP Specification Part 3).
constexpr std::size_t kXmpTrailerLength = 258;
constexpr std::string_view kXmpApplication = "XMP DataXMP";
constexpr std::string_view kResourcesApplication = "MGK8BIM0000";
constexpr std::string_view kIptcApplication = "MGKIPTC0000";

/// Application blocks that are not carried: animation loop counts, and the colour profile, because the
/// encoder has already written that of the pixels.
constexpr std::array kLeftBehind = {"NETSCAPE2.0"sv, "ANIMEXTS1.0"sv, gif::kProfileApplication};

bool isMetadata(const gif::Extension& extension) {
    if (extension.label == gif::kCommentLabel)
        return true;
    return extension.label == gif::kApplicationLabel &&
           extension.whole.size() > gif::kApplicationHeaderLength &&
           std::ranges::find(kLeftBehind, extension.application()) == kLeftBehind.end();
}

/// Appends nothing if the packet contains a zero byte, which would end it for sub-block readers.
void appendXmp(Bytes& to, ByteView xmp) {
    if (std::ranges::find(xmp, 0) != xmp.end())
        return;
    gif::appendApplicationHeader(to, kXmpApplication);
    append(to, xmp);
    to.push_back(1);
    for (int value = 255; value >= 0; --value)
        to.push_back(static_cast<std::uint8_t>(value));
    to.push_back(0);
}

/// The packet: stored without sub-blocks as prescribed or, by some software, in sub-blocks.
Bytes xmpOf(const gif::Extension& extension) {
    const ByteView data = slice(extension.whole, gif::kApplicationHeaderLength);
    if (data.size() > kXmpTrailerLength && data[data.size() - kXmpTrailerLength] == 1 &&
        data[data.size() - kXmpTrailerLength + 1] == 255) {
        const ByteView packet = data.first(data.size() - kXmpTrailerLength);
        return {packet.begin(), packet.end()};
    }
    return gif::joinedSubBlocks(extension.whole, gif::kApplicationHeaderLength);
}

void appendCarried(Bytes& to, const gif::Extension& extension) {
    const auto carry = [&](const Bytes& data, const Bytes& carried, auto write) {
        if (data == carried)
            append(to, extension.whole);
        else
            write(carried);
    };
    const auto writeApplication = [&](const Bytes& data) {
        gif::appendApplicationHeader(to, extension.application());
        gif::appendSubBlocks(to, data);
    };
    if (extension.isApplication(kXmpApplication)) {
        const Bytes xmp = xmpOf(extension);
        carry(xmp, xmpToCarry(xmp), [&](const Bytes& data) { appendXmp(to, data); });
    } else if (extension.isApplication(kResourcesApplication) || extension.isApplication(kIptcApplication)) {
        const Bytes data = gif::joinedSubBlocks(extension.whole, gif::kApplicationHeaderLength);
        carry(data, startsWith(data, "8BIM") ? resourcesToCarry(data) : iptcToCarry(data), writeApplication);
    } else {
        append(to, extension.whole);
    }
}

Result<FileContents> withMetadataExtensions(ByteView written, ByteView extensions,
                                            std::optional<std::uint8_t> aspect = std::nullopt) {
    return gif::withExtensions(written, extensions, aspect, isMetadata);
}

} // namespace

PictureMetadata readGifMetadata(ByteView file) {
    PictureMetadata metadata;
    const auto gif = gif::split(file);
    if (!gif)
        return metadata;
    for (const gif::Extension& extension : gif->extensions) {
        if (extension.label == gif::kCommentLabel) {
            metadata.notes.push_back(
                {std::string(kCommentKeyword), utf8Of(gif::joinedSubBlocks(extension.whole, 2))});
        } else if (extension.isApplication(kXmpApplication) && metadata.xmp.empty()) {
            metadata.xmp = xmpInUtf8(xmpOf(extension));
        } else if (extension.isApplication(kResourcesApplication) ||
                   extension.isApplication(kIptcApplication)) {
            const Bytes data = gif::joinedSubBlocks(extension.whole, gif::kApplicationHeaderLength);
            append(metadata.iptc, startsWith(data, "8BIM") ? iptcOfResources(data) : data);
            append(metadata.photoshop, resourcesWithoutIptc(data));
        }
    }
    return metadata;
}

Result<FileContents> withGifBlocksOf(ByteView source, ByteView written) {
    const auto gif = gif::split(source);
    if (!gif)
        return withMetadataExtensions(written, {});
    Bytes extensions;
    for (const gif::Extension& extension : gif->extensions)
        if (isMetadata(extension))
            appendCarried(extensions, extension);
    return withMetadataExtensions(written, extensions, source[gif::kAspectRatioOffset]);
}

Result<FileContents> withGifMetadata(const PictureMetadata& metadata, ByteView written) {
    Bytes extensions;
    for (const TextNote& note : metadata.notes) {
        gif::appendComment(extensions, noteAsComment(note));
    }
    if (!metadata.xmp.empty())
        appendXmp(extensions, xmpUpright(xmpToCarry(metadata.xmp)));
    if (const Bytes resources = resourcesToCarry(resourcesWithIptc(metadata.photoshop, metadata.iptc));
        !resources.empty()) {
        gif::appendApplicationHeader(extensions, kIptcApplication);
        gif::appendSubBlocks(extensions, resources);
    }
    return withMetadataExtensions(written, extensions);
}

} // namespace complexion
