// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/gif_metadata.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/gif_structure.h"
#include "imaging/metadata/photoshop_resources.h"
#include "imaging/metadata/text_encoding.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

// GIF89a.
constexpr std::size_t kAspectOffset = 12;
constexpr std::size_t kImageDescriptorLength = 10;
constexpr std::size_t kImageFlagsOffset = 9;
constexpr std::uint8_t kCommentLabel = 0xfe;
constexpr std::uint8_t kApplicationLabel = 0xff;
constexpr std::size_t kLongestSubBlock = 255;

// An application extension's name and code; XMP's data stand bare behind it, closed by a slide of falling
// numbers that leads any reader of sub-blocks to the end (XMP Specification Part 3).
constexpr std::size_t kApplicationNameLength = 11;
constexpr std::size_t kApplicationHeaderLength = 3 + kApplicationNameLength;
constexpr std::size_t kXmpTrailerLength = 258;
constexpr std::string_view kXmpApplication = "XMP DataXMP";
constexpr std::string_view kResourcesApplication = "MGK8BIM0000";
constexpr std::string_view kIptcApplication = "MGKIPTC0000";
constexpr std::string_view kProfileApplication = "ICCRGBG1012"; // ICC.1, annex B

/// Application blocks that are left behind: an animation's repetitions; a colour profile, because SaveImage
/// wrote the one that the pixels are in.
constexpr std::array kLeftBehind = {"NETSCAPE2.0"sv, "ANIMEXTS1.0"sv, kProfileApplication};

struct GifExtension {
    std::uint8_t label = 0;
    ByteView whole;

    bool isApplication(std::string_view name) const {
        return label == kApplicationLabel && application() == name;
    }
    std::string_view application() const { return textOf(slice(whole, 3, kApplicationNameLength)); }
};

struct GifBlocks {
    /// The header, the screen's descriptor and its colour table.
    ByteView start;
    std::vector<GifExtension> extensions;
};

std::optional<GifBlocks> splitGif(ByteView file) {
    if (file.size() < kGifHeaderLength)
        return std::nullopt;
    GifBlocks gif;
    std::size_t position = kGifHeaderLength + gifColorTableLength(file[kGifScreenFlagsOffset]);
    gif.start = slice(file, 0, position);
    while (position + 2 < file.size()) {
        const std::size_t begin = position;
        if (file[begin] == kGifExtension) {
            const auto end = gifSubBlocksEnd(file, begin + 2);
            if (!end)
                break;
            position = *end;
            gif.extensions.push_back({file[begin + 1], file.subspan(begin, position - begin)});
        } else if (file[begin] == kGifPicture && begin + kImageDescriptorLength < file.size()) {
            const std::size_t table = gifColorTableLength(file[begin + kImageFlagsOffset]);
            position =
                gifSubBlocksEnd(file, begin + kImageDescriptorLength + table + 1).value_or(file.size());
        } else {
            break;
        }
    }
    return gif;
}

bool isMetadata(const GifExtension& extension) {
    if (extension.label == kCommentLabel)
        return true;
    return extension.label == kApplicationLabel && extension.whole.size() > kApplicationHeaderLength &&
           std::ranges::find(kLeftBehind, extension.application()) == kLeftBehind.end();
}

/// The data of the sub-blocks from `position` on, one after the other.
Bytes joined(ByteView extension, std::size_t position) {
    Bytes data;
    while (position < extension.size() && extension[position] != 0) {
        append(data, slice(extension, position + 1, extension[position]));
        position += 1 + std::size_t{extension[position]};
    }
    return data;
}

void appendSubBlocks(Bytes& to, ByteView data) {
    for (std::size_t position = 0; position < data.size(); position += kLongestSubBlock) {
        const ByteView block = slice(data, position, kLongestSubBlock);
        to.push_back(static_cast<std::uint8_t>(block.size()));
        append(to, block);
    }
    to.push_back(0);
}

void appendApplication(Bytes& to, std::string_view name) {
    append(to, Bytes{kGifExtension, kApplicationLabel, kApplicationNameLength});
    append(to, bytesOf(name));
}

/// Nothing when a zero in the packet would end it for readers of sub-blocks.
void appendXmp(Bytes& to, ByteView xmp) {
    if (std::ranges::find(xmp, 0) != xmp.end())
        return;
    appendApplication(to, kXmpApplication);
    append(to, xmp);
    to.push_back(1);
    for (int value = 255; value >= 0; --value)
        to.push_back(static_cast<std::uint8_t>(value));
    to.push_back(0);
}

/// The packet, whether it stands bare as it should or in sub-blocks as some software has it.
Bytes xmpOf(const GifExtension& extension) {
    const ByteView data = slice(extension.whole, kApplicationHeaderLength);
    if (data.size() > kXmpTrailerLength && data[data.size() - kXmpTrailerLength] == 1 &&
        data[data.size() - kXmpTrailerLength + 1] == 255) {
        const ByteView packet = data.first(data.size() - kXmpTrailerLength);
        return {packet.begin(), packet.end()};
    }
    return joined(extension.whole, kApplicationHeaderLength);
}

void appendCarried(Bytes& to, const GifExtension& extension) {
    const auto carry = [&](const Bytes& data, const Bytes& carried, auto write) {
        if (data == carried)
            append(to, extension.whole);
        else
            write(carried);
    };
    const auto writeApplication = [&](const Bytes& data) {
        appendApplication(to, extension.application());
        appendSubBlocks(to, data);
    };
    if (extension.isApplication(kXmpApplication)) {
        const Bytes xmp = xmpOf(extension);
        carry(xmp, xmpToCarry(xmp), [&](const Bytes& data) { appendXmp(to, data); });
    } else if (extension.isApplication(kResourcesApplication) || extension.isApplication(kIptcApplication)) {
        const Bytes data = joined(extension.whole, kApplicationHeaderLength);
        carry(data, startsWith(data, "8BIM") ? resourcesToCarry(data) : iptcToCarry(data), writeApplication);
    } else {
        append(to, extension.whole);
    }
}

/// `written` with `extensions` before its picture, instead of what it has of the kind.
Result<FileContents> withExtensions(ByteView written, ByteView extensions,
                                    std::optional<std::uint8_t> aspect) {
    const auto gif = splitGif(written);
    if (!gif || gif->start.size() == written.size())
        return Error{"the GIF file to give metadata to is damaged"};
    Bytes file(gif->start.begin(), gif->start.end());
    file.reserve(written.size() + extensions.size());
    // Extensions came with the version of 1989.
    std::copy_n("GIF89a", 6, file.begin());
    if (aspect)
        file[kAspectOffset] = *aspect;
    append(file, extensions);
    ByteView rest = written.subspan(gif->start.size());
    for (const GifExtension& old : gif->extensions)
        if (isMetadata(old)) {
            const auto before = static_cast<std::size_t>(old.whole.data() - rest.data());
            append(file, rest.first(before));
            rest = rest.subspan(before + old.whole.size());
        }
    append(file, rest);
    FileContents contents;
    contents.append(std::move(file));
    return contents;
}

} // namespace

Bytes profileOfGif(ByteView file) {
    if (const auto gif = splitGif(file))
        for (const GifExtension& extension : gif->extensions)
            if (extension.isApplication(kProfileApplication))
                return joined(extension.whole, kApplicationHeaderLength);
    return {};
}

Result<FileContents> withGifProfile(ByteView icc, ByteView written) {
    Bytes extension;
    appendApplication(extension, kProfileApplication);
    appendSubBlocks(extension, icc);
    return withExtensions(written, extension, std::nullopt);
}

PictureMetadata readGifMetadata(ByteView file) {
    PictureMetadata metadata;
    const auto gif = splitGif(file);
    if (!gif)
        return metadata;
    for (const GifExtension& extension : gif->extensions) {
        if (extension.label == kCommentLabel) {
            metadata.notes.push_back({std::string(kCommentKeyword), utf8Of(joined(extension.whole, 2))});
        } else if (extension.isApplication(kXmpApplication) && metadata.xmp.empty()) {
            metadata.xmp = xmpInUtf8(xmpOf(extension));
        } else if (extension.isApplication(kResourcesApplication) ||
                   extension.isApplication(kIptcApplication)) {
            const Bytes data = joined(extension.whole, kApplicationHeaderLength);
            append(metadata.iptc, startsWith(data, "8BIM") ? iptcOfResources(data) : data);
            append(metadata.photoshop, resourcesWithoutIptc(data));
        }
    }
    return metadata;
}

Result<FileContents> withGifBlocksOf(ByteView source, ByteView written) {
    const auto gif = splitGif(source);
    if (!gif)
        return withExtensions(written, {}, std::nullopt);
    Bytes extensions;
    for (const GifExtension& extension : gif->extensions)
        if (isMetadata(extension))
            appendCarried(extensions, extension);
    return withExtensions(written, extensions, source[kAspectOffset]);
}

Result<FileContents> withGifMetadata(const PictureMetadata& metadata, ByteView written) {
    Bytes extensions;
    for (const TextNote& note : metadata.notes) {
        append(extensions, Bytes{kGifExtension, kCommentLabel});
        appendSubBlocks(extensions, bytesOf(noteAsComment(note)));
    }
    if (!metadata.xmp.empty())
        appendXmp(extensions, xmpUpright(xmpToCarry(metadata.xmp)));
    if (const Bytes resources = resourcesToCarry(resourcesWithIptc(metadata.photoshop, metadata.iptc));
        !resources.empty()) {
        appendApplication(extensions, kIptcApplication);
        appendSubBlocks(extensions, resources);
    }
    return withExtensions(written, extensions, std::nullopt);
}

} // namespace complexion
