// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/file_identity.h"
#include "imaging/base/image.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace complexion {

/// The state images on disk, each with the image it was written from: as long as the file is the very one
/// that was written, reading it gives that image back without decoding, and so without a lossy format's loss.
class StateImageFiles {
public:
    /// Writes `image`; false when that failed. An earlier file at `path` is replaced.
    bool write(const Image& image, const std::filesystem::path& path, std::string_view format);

    /// As `write`, but leaves the file to `writeNext`.
    void writeLater(const Image& image, const std::filesystem::path& path, std::string_view format);
    /// Writes one file that was left; false when there is none. One that cannot be written stays unwritten,
    /// and is read from memory.
    bool writeNext();

    /// The image in the file at `path`; nothing when it cannot be read or decoded.
    std::optional<Image> read(const std::filesystem::path& path) const;
    /// Whether `read` gives the very image that was written.
    bool isAsWritten(const std::filesystem::path& path) const;

    /// Deletes the file. On failure prints "Remove failed: " and the system's description.
    void remove(const std::filesystem::path& path);

private:
    struct Written {
        Image image;
        FileIdentity identity;
    };
    struct Unwritten {
        Image image;
        std::string format;
        bool isTried = false;
    };
    std::map<std::filesystem::path, Written> m_written;
    std::map<std::filesystem::path, Unwritten> m_unwritten;
};

/// Deletes the file at `path`; on failure prints "Remove failed: " and the system's description on standard
/// output.
void removeFile(const std::filesystem::path& path);

} // namespace complexion
