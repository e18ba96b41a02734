// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

#include <string>
#include <string_view>

namespace complexion {

bool isUtf8(std::string_view text);

/// Text in an unknown encoding as UTF-8: unchanged if it is valid UTF-8, otherwise converted from Latin-1.
/// Trailing zeros are removed.
std::string utf8Of(ByteView text);

std::string utf8FromLatin1(std::string_view text);

/// Converts UTF-16; unpaired surrogates become the replacement character.
std::string utf8FromUtf16(ByteView text, ByteOrder order);

} // namespace complexion
