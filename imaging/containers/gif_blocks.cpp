// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/gif_blocks.h"

#include "imaging/containers/byte_order.h"

#include <algorithm>

namespace complexion::gif {

namespace {

constexpr std::size_t kScreenWidthOffset = 6;
constexpr std::size_t kScreenHeightOffset = 8;
constexpr std::size_t kScreenFlagsOffset = 10;
// The first byte of an extension (GIF89a section 23) and of an image descriptor (section 20).
constexpr std::uint8_t kExtensionIntroducer = 0x21;
constexpr std::uint8_t kFrameSeparator = 0x2C;
constexpr std::size_t kFrameDescriptorLength = 10;
constexpr std::size_t kFrameFlagsOffset = 9;
constexpr std::size_t kApplicationNameOffset = 3;
constexpr std::size_t kApplicationNameLength = 11;
constexpr std::size_t kMaxSubBlockLength = 255;

/// The size in bytes of the colour table that the packed flags describe (GIF89a sections 18 and 20).
constexpr std::size_t colorTableLength(std::uint8_t flags) {
    constexpr std::uint8_t kHasColorTable = 0x80;
    return (flags & kHasColorTable) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

/// The offset after the sub-blocks at `position` and their terminator. Nothing if the file ends before it.
std::optional<std::size_t> subBlocksEnd(ByteView file, std::size_t position) {
    while (position < file.size() && file[position] != 0)
        position += std::size_t{1} + file[position];
    return position < file.size() ? std::optional(position + 1) : std::nullopt;
}

PixelRect frameRect(ByteView descriptor) {
    using little_endian::read16;
    return {read16(descriptor, 1), read16(descriptor, 3), read16(descriptor, 5), read16(descriptor, 7)};
}

} // namespace

std::string_view Extension::application() const {
    return textOf(slice(whole, kApplicationNameOffset, kApplicationNameLength));
}

bool Extension::isApplication(std::string_view name) const {
    return label == kApplicationLabel && application() == name;
}

std::optional<Blocks> split(ByteView file) {
    if (file.size() < kHeaderLength)
        return std::nullopt;
    Blocks gif;
    std::size_t position = kHeaderLength + colorTableLength(file[kScreenFlagsOffset]);
    gif.start = slice(file, 0, position);
    gif.screen = {little_endian::read16(file, kScreenWidthOffset),
                  little_endian::read16(file, kScreenHeightOffset)};
    while (position + 2 < file.size()) {
        const std::size_t begin = position;
        if (file[begin] == kExtensionIntroducer) {
            const auto end = subBlocksEnd(file, begin + 2);
            if (!end)
                break;
            position = *end;
            gif.extensions.push_back({file[begin + 1], file.subspan(begin, position - begin)});
        } else if (file[begin] == kFrameSeparator && begin + kFrameDescriptorLength < file.size()) {
            const std::size_t data =
                begin + kFrameDescriptorLength + colorTableLength(file[begin + kFrameFlagsOffset]);
            gif.frames.push_back({frameRect(file.subspan(begin, kFrameDescriptorLength)), data});
            position = subBlocksEnd(file, data + 1).value_or(file.size());
        } else {
            break;
        }
    }
    return gif;
}

Bytes joinedSubBlocks(ByteView extension, std::size_t position) {
    Bytes data;
    while (position < extension.size() && extension[position] != 0) {
        append(data, slice(extension, position + 1, extension[position]));
        position += 1 + std::size_t{extension[position]};
    }
    return data;
}

void appendSubBlocks(Bytes& to, ByteView data) {
    for (std::size_t position = 0; position < data.size(); position += kMaxSubBlockLength) {
        const ByteView block = slice(data, position, kMaxSubBlockLength);
        to.push_back(static_cast<std::uint8_t>(block.size()));
        append(to, block);
    }
    to.push_back(0);
}

void appendApplicationHeader(Bytes& to, std::string_view name) {
    append(to, Bytes{kExtensionIntroducer, kApplicationLabel, kApplicationNameLength});
    append(to, bytesOf(name));
}

void appendComment(Bytes& to, std::string_view text) {
    append(to, Bytes{kExtensionIntroducer, kCommentLabel});
    appendSubBlocks(to, bytesOf(text));
}

Bytes profile(ByteView file) {
    if (const auto gif = split(file))
        for (const Extension& extension : gif->extensions)
            if (extension.isApplication(kProfileApplication))
                return joinedSubBlocks(extension.whole, kApplicationHeaderLength);
    return {};
}

Result<FileContents> withProfile(ByteView icc, ByteView written) {
    Bytes extension;
    appendApplicationHeader(extension, kProfileApplication);
    appendSubBlocks(extension, icc);
    return withExtensions(written, extension, std::nullopt, [](const Extension&) { return false; });
}

Result<FileContents> withExtensions(ByteView written, ByteView extensions, std::optional<std::uint8_t> aspect,
                                    bool (*isReplaced)(const Extension&)) {
    const auto gif = split(written);
    if (!gif || gif->start.size() == written.size())
        return Error{"the GIF file to give extensions to is damaged"};
    Bytes file(gif->start.begin(), gif->start.end());
    file.reserve(written.size() + extensions.size());
    // Extensions need version 89a.
    std::copy_n("GIF89a", 6, file.begin());
    if (aspect)
        file[kAspectRatioOffset] = *aspect;
    append(file, extensions);
    ByteView rest = written.subspan(gif->start.size());
    for (const Extension& old : gif->extensions)
        if (isReplaced(old)) {
            const auto before = static_cast<std::size_t>(old.whole.data() - rest.data());
            append(file, rest.first(before));
            rest = rest.subspan(before + old.whole.size());
        }
    append(file, rest);
    FileContents contents;
    contents.append(std::move(file));
    return contents;
}

} // namespace complexion::gif
