// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/trailer_blocks.h"

#include "imaging/containers/byte_order.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace complexion::jpeg {

bool hasPicture(ByteView block) {
    using namespace std::string_view_literals;
    const std::string_view text = textOf(block);
    return std::ranges::any_of(
        std::array{"\xff\xd8\xff"sv, "\x89PNG"sv, "ftyp"sv},
        [text](std::string_view start) { return text.find(start) != std::string_view::npos; });
}

} // namespace complexion::jpeg
