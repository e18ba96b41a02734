// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

#include <string>
#include <string_view>

namespace complexion {

bool isUtf8(std::string_view text);

/// Text whose encoding nobody tells: as it is when it is UTF-8, otherwise taken as Latin 1. Closing zeros are
/// no part of it.
std::string utf8Of(ByteView text);

std::string utf8FromLatin1(std::string_view text);

/// Text of 16-bit units; half surrogate pairs become the replacement character.
std::string utf8FromUtf16(ByteView text, ByteOrder order);

} // namespace complexion
