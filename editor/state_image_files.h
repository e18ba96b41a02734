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

/// The state files on disk, each with the image it was written from. Reading a file that has not changed
/// since returns that image without decoding, and so without the loss of a lossy format.
class StateImageFiles {
public:
    /// Writes `image`, replacing an existing file at `path`. Returns false on failure.
    bool write(const Image& image, const std::filesystem::path& path, std::string_view format);

    /// Like `write`, but postpones writing to `writeNext`.
    void writeLater(const Image& image, const std::filesystem::path& path, std::string_view format);
    /// Writes one postponed file. Returns false if there is none. If writing fails, the image is kept in
    /// memory.
    bool writeNext();

    /// The image in the file at `path`; nothing if it cannot be read or decoded.
    std::optional<Image> read(const std::filesystem::path& path) const;
    /// Whether `read` returns the image that was written.
    bool isAsWritten(const std::filesystem::path& path) const;

    /// Deletes the file. On failure prints "Remove failed: " and the system's error message.
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

/// Deletes the file at `path`. On failure prints "Remove failed: " and the system's error message on standard
/// output.
void removeFile(const std::filesystem::path& path);

} // namespace complexion
