// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/container.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/tiff_structure.h"

#include <array>
#include <utility>

namespace complexion {

namespace {

using namespace std::string_view_literals;

// SOI alone identifies a JPEG file: another marker should follow at once, but decoders skip stray bytes
// before it.
constexpr std::array<std::pair<std::string_view, Container>, 4> kSignatures = {{
    {"\xff\xd8"sv, Container::Jpeg},
    {"\x89PNG\r\n\x1a\n"sv, Container::Png},
    {"GIF87a"sv, Container::Gif},
    {"GIF89a"sv, Container::Gif},
}};

/// "BM" alone is a weak signature: the size of the picture header, which follows the 14-byte file header,
/// must be plausible too.
bool isBmp(ByteView file) {
    constexpr std::size_t kHeaderSizeOffset = 14;
    constexpr std::uint64_t kMinHeaderSize = 12;
    constexpr std::uint64_t kMaxHeaderSize = 0xffff;
    const std::uint64_t headerSize = numberAt(file, kHeaderSizeOffset, 4, ByteOrder::LittleEndian);
    return startsWith(file, "BM"sv) && headerSize >= kMinHeaderSize && headerSize <= kMaxHeaderSize;
}

} // namespace

std::optional<Container> containerOf(ByteView file) {
    for (const auto& [signature, container] : kSignatures)
        if (startsWith(file, signature))
            return container;
    if (isBmp(file))
        return Container::Bmp;
    if (tiff::readHeader(file))
        return Container::Tiff;
    return std::nullopt;
}

} // namespace complexion
