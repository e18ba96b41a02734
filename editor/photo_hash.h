// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/file_identity.h"

#include <QCryptographicHash>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace complexion {

/// The BLAKE2b-256 hash of a photo's bytes.
using PhotoHash = std::array<std::uint8_t, 32>;

/// Hashes a file piece by piece, so that whoever does it can do other things in between.
class PhotoHasher {
public:
    explicit PhotoHasher(const std::filesystem::path& path);
    PhotoHasher(const PhotoHasher&) = delete;
    PhotoHasher& operator=(const PhotoHasher&) = delete;
    ~PhotoHasher();

    /// Reads the next MiB; false when there is none.
    bool readOn();
    /// The hash of what was read; none when the file could not be read, or changed meanwhile.
    std::optional<PhotoHash> result() const;
    /// Of the file that is read; none when it cannot be opened.
    const std::optional<FileIdentity>& identity() const { return m_identity; }

private:
    int m_file;
    std::optional<FileIdentity> m_identity;
    QCryptographicHash m_hash{QCryptographicHash::Blake2b_256};
    std::vector<char> m_piece;
    bool m_hasFailed = false;
};

} // namespace complexion
