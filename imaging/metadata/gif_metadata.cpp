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

namespace complexion::gif {

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
constexpr std::array kLeftBehind = {"NETSCAPE2.0"sv, "ANIMEXTS1.0"sv, kProfileApplication};

bool isMetadata(const Extension& extension) {
    if (extension.label == kCommentLabel)
        return true;
    return extension.label == kApplicationLabel && extension.whole.size() > kApplicationHeaderLength &&
           std::ranges::find(kLeftBehind, extension.application()) == kLeftBehind.end();
}

/// Appends nothing if the packet contains a zero byte, which would end it for sub-block readers.
void appendXmp(Bytes& to, ByteView xmp) {
    if (std::ranges::find(xmp, 0) != xmp.end())
        return;
    appendApplicationHeader(to, kXmpApplication);
    append(to, xmp);
    to.push_back(1);
    for (int value = 255; value >= 0; --value)
        to.push_back(static_cast<std::uint8_t>(value));
    to.push_back(0);
}

/// The packet: stored without sub-blocks as prescribed or, by some software, in sub-blocks.
Bytes xmpOf(const Extension& extension) {
    const ByteView data = slice(extension.whole, kApplicationHeaderLength);
    if (data.size() > kXmpTrailerLength && data[data.size() - kXmpTrailerLength] == 1 &&
        data[data.size() - kXmpTrailerLength + 1] == 255) {
        const ByteView packet = data.first(data.size() - kXmpTrailerLength);
        return {packet.begin(), packet.end()};
    }
    return joinedSubBlocks(extension.whole, kApplicationHeaderLength);
}

void appendCarried(Bytes& to, const Extension& extension) {
    const auto carry = [&](const Bytes& data, const Bytes& carried, auto write) {
        if (data == carried)
            append(to, extension.whole);
        else
            write(carried);
    };
    const auto writeApplication = [&](const Bytes& data) {
        appendApplicationHeader(to, extension.application());
        appendSubBlocks(to, data);
    };
    if (extension.isApplication(kXmpApplication)) {
        const Bytes xmp = xmpOf(extension);
        carry(xmp, xmp::toCarry(xmp), [&](const Bytes& data) { appendXmp(to, data); });
    } else if (extension.isApplication(kResourcesApplication) || extension.isApplication(kIptcApplication)) {
        const Bytes data = joinedSubBlocks(extension.whole, kApplicationHeaderLength);
        carry(data,
              startsWith(data, "8BIM") ? photoshop::resourcesToCarry(data) : photoshop::iptcToCarry(data),
              writeApplication);
    } else {
        append(to, extension.whole);
    }
}

Result<FileContents> withMetadataExtensions(ByteView written, ByteView extensions,
                                            std::optional<std::uint8_t> aspect = std::nullopt) {
    return withExtensions(written, extensions, aspect, isMetadata);
}

} // namespace

PictureMetadata readMetadata(ByteView file) {
    PictureMetadata metadata;
    const auto gif = split(file);
    if (!gif)
        return metadata;
    for (const Extension& extension : gif->extensions) {
        if (extension.label == kCommentLabel) {
            metadata.notes.push_back(
                {std::string(kCommentKeyword), utf8Of(joinedSubBlocks(extension.whole, 2))});
        } else if (extension.isApplication(kXmpApplication) && metadata.xmp.empty()) {
            metadata.xmp = xmp::inUtf8(xmpOf(extension));
        } else if (extension.isApplication(kResourcesApplication) ||
                   extension.isApplication(kIptcApplication)) {
            const Bytes data = joinedSubBlocks(extension.whole, kApplicationHeaderLength);
            append(metadata.iptc, startsWith(data, "8BIM") ? photoshop::iptcOf(data) : data);
            append(metadata.photoshop, photoshop::withoutIptc(data));
        }
    }
    return metadata;
}

Result<FileContents> withBlocksOf(ByteView source, ByteView written) {
    const auto gif = split(source);
    if (!gif)
        return withMetadataExtensions(written, {});
    Bytes extensions;
    for (const Extension& extension : gif->extensions)
        if (isMetadata(extension))
            appendCarried(extensions, extension);
    return withMetadataExtensions(written, extensions, source[kAspectRatioOffset]);
}

Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written) {
    Bytes extensions;
    for (const TextNote& note : metadata.notes) {
        appendComment(extensions, noteAsComment(note));
    }
    if (!metadata.xmp.empty())
        appendXmp(extensions, xmp::upright(xmp::toCarry(metadata.xmp)));
    if (const Bytes resources =
            photoshop::resourcesToCarry(photoshop::withIptc(metadata.photoshop, metadata.iptc));
        !resources.empty()) {
        appendApplicationHeader(extensions, kIptcApplication);
        appendSubBlocks(extensions, resources);
    }
    return withMetadataExtensions(written, extensions);
}

} // namespace complexion::gif
