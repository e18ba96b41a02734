// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/file_identity.h"
#include "imaging/base/descriptor.h"

#include <QCryptographicHash>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace complexion {

/// The BLAKE2b-256 hash of a photo's bytes.
using PhotoHash = std::array<std::uint8_t, 32>;

/// Hashes a file in chunks, so that the caller can do other work in between.
class PhotoHasher {
public:
    explicit PhotoHasher(const std::filesystem::path& path);

    /// Hashes the next MiB. Returns false at the end of the file or on an error.
    bool readOn();
    /// The hash of the bytes read; nothing if reading failed or the file changed meanwhile.
    std::optional<PhotoHash> result() const;
    /// The file's identity; nothing if it could not be opened.
    const std::optional<FileIdentity>& identity() const { return m_identity; }

private:
    Descriptor m_file;
    std::optional<FileIdentity> m_identity;
    QCryptographicHash m_hash{QCryptographicHash::Blake2b_256};
    std::vector<char> m_chunk;
    bool m_hasFailed = false;
};

} // namespace complexion
