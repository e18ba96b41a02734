// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <optional>
#include <string>
#include <string_view>

namespace complexion::xmp {

/// The length of the digest by which a packet refers to its extension, in hexadecimal digits.
inline constexpr std::size_t kDigestLength = 32;

/// A packet split for files that cannot hold it in one piece (XMP Specification Part 3, "JPEG"). `main`
/// contains the digest of `extension`, which is empty if one piece is enough.
struct DividedPacket {
    std::string main;
    std::string extension;
};

/// Splits `packet` (UTF-8) so that the main part has at most `maxMainLength` bytes. The largest properties go
/// into the extension, or the whole packet if that is not enough or it is not well-formed XMP.
DividedPacket divided(std::string_view packet, std::size_t maxMainLength);

/// One packet with the properties of both parts and without the reference to an extension; nullopt if one of
/// them is not well formed.
std::optional<std::string> joined(std::string_view main, std::string_view extension);

/// An MD5 digest (RFC 1321) in upper-case hexadecimal digits.
std::string digest(std::string_view packet);

} // namespace complexion::xmp
