// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "editor/state_image_files.h"
#include "imaging/base/image.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// The states of the working image, each a file in the platform's temporary folder, and the place among them.
/// Main thread only.
class StateHistory {
public:
    /// `platform` outlives the history.
    explicit StateHistory(Platform& platform) : m_platform(platform) {}

    /// Paths of the state files, oldest first; the files belong to the list.
    std::vector<std::filesystem::path> paths;
    /// Compared with `position`, so that the list holds at most one path more.
    std::int64_t bound = 50;
    /// Index of the state that the working image is at; -1 before there is a history. Outside the list after
    /// a first state that could not be written.
    std::int64_t position = -1;

    /// The wall clock in milliseconds since 1970, which names a state that is written now.
    std::int64_t milliseconds() const;
    /// A path for a state of that time. `format` is one of ours, lower case.
    std::filesystem::path makePath(const std::string& format, std::int64_t milliseconds) const;

    /// When a state's file is written. Never: it counts as one that could not be.
    enum class Writing { Now, Later, Never };

    /// Deletes all states and writes `image` as the first; false when that failed.
    bool begin(const Image& image, const std::string& format);
    /// Records `image` after the current state; false when it could not be written. Later states are deleted
    /// first, the oldest one of a full history only after `image` is written.
    bool push(const Image& image, const std::string& format, std::int64_t milliseconds,
              Writing writing = Writing::Now);
    /// Writes one of the files that were left for later; false when there is none.
    bool writeNext() { return m_files.writeNext(); }

    bool hasState(std::int64_t index) const { return index >= 0 && index < std::ssize(paths); }
    /// Moves to state `index` and returns its image; stays where it is when that cannot be read.
    std::optional<Image> moveTo(std::int64_t index);
    /// Whether the current state is the very image that was recorded, and not what another program has put
    /// into its file.
    bool isAsRecorded() const { return m_files.isAsWritten(paths[static_cast<std::size_t>(position)]); }

    /// Deletes all files; the list and the position stay.
    void removeFiles();
    /// Deletes one file; the list stays.
    void removeFile(const std::filesystem::path& path) { m_files.remove(path); }

private:
    bool write(const Image& image, const std::filesystem::path& path, const std::string& format,
               Writing writing);

    Platform& m_platform;
    StateImageFiles m_files;
};

} // namespace complexion
