// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/container.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/tiff_structure.h"

#include <array>
#include <utility>

namespace complexion {

namespace {

using namespace std::string_view_literals;

constexpr std::array<std::pair<std::string_view, Container>, 5> kSignatures = {{
    {"\xff\xd8\xff"sv, Container::Jpeg},
    {"\x89PNG\r\n\x1a\n"sv, Container::Png},
    {"GIF87a"sv, Container::Gif},
    {"GIF89a"sv, Container::Gif},
    {"BM"sv, Container::Bmp},
}};

} // namespace

std::optional<Container> containerOf(ByteView file) {
    for (const auto& [signature, container] : kSignatures)
        if (startsWith(file, signature))
            return container;
    if (readTiffHeader(file))
        return Container::Tiff;
    return std::nullopt;
}

} // namespace complexion
