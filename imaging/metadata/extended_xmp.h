// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
#include <string>
#include <string_view>

namespace complexion {

/// The characters of the digest by which a packet names its extension.
inline constexpr std::size_t kXmpDigestLength = 32;

/// A packet in two, for files that cannot hold it in one (XMP Specification Part 3, "JPEG"). The first names
/// the digest of the second, which is empty where one is enough.
struct DividedXmp {
    std::string main;
    std::string extension;
};

/// `packet`, in UTF-8, divided so that the first part has at most `most` bytes. The largest properties go
/// into the second; where that does not do, or the packet is no XMP, all of it does.
DividedXmp dividedXmp(std::string_view packet, std::size_t most);

/// One packet with the properties of both parts, which no longer tells of two; nothing when one of them is
/// not well formed.
std::optional<std::string> joinedXmp(std::string_view main, std::string_view extension);

/// An MD5 digest (RFC 1321) in upper-case hexadecimal digits.
std::string xmpDigest(std::string_view packet);

} // namespace complexion
