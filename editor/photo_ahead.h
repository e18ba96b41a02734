// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/file_identity.h"
#include "imaging/photo_files.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace complexion {

/// Reads a photo on a thread of its own, so that one named on the command line is decoded while the window is
/// built.
class PhotoAhead {
public:
    /// Begins to read the file at `path`. The reader process must have been started.
    explicit PhotoAhead(std::filesystem::path path);
    PhotoAhead(const PhotoAhead&) = delete;
    PhotoAhead& operator=(const PhotoAhead&) = delete;
    /// Cancels the reading. Waits for its end, but not for long: a file on a lost network drive is never
    /// read.
    ~PhotoAhead();

    const std::filesystem::path& path() const { return m_path; }

    /// Waits for the photo; as openPhoto, with both callbacks on this thread. Call once.
    Result<OpenedPhoto> wait(const ReadingProgress& progress, const PreviewListener& listener = {});
    /// The file's identity before it was read. Call after `wait`.
    const std::optional<FileIdentity>& identity() const;

private:
    struct Reading;

    std::filesystem::path m_path;
    std::shared_ptr<Reading> m_reading; // shared with the thread
};

} // namespace complexion
