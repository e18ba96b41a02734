// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "editor/state_image_files.h"
#include "editor/step_name.h"
#include "imaging/base/image.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// The states of the working image, each a file in the platform's temporary folder, and the current position.
/// Main thread only.
class StateHistory {
public:
    /// `platform` must outlive the history.
    explicit StateHistory(Platform& platform) : m_platform(platform) {}

    /// The state files, oldest first, owned by the history.
    std::vector<std::filesystem::path> paths;
    /// The largest `position`; the history holds at most one state more than this.
    std::int64_t bound = 50;
    /// The index of the current state; -1 before there is a history. Out of range if the first state could
    /// not be written.
    std::int64_t position = -1;

    /// Wall-clock time in milliseconds since 1970, used to name a new state file.
    std::int64_t milliseconds() const;
    /// The path of a state recorded at `milliseconds`. `format` is an accepted type in lower case.
    std::filesystem::path makePath(const std::string& format, std::int64_t milliseconds) const;

    /// When a state file is written. `Never` behaves like a failed write.
    enum class Writing { Now, Later, Never };

    /// Deletes all states and writes `image` as the first. Returns false if writing fails.
    bool begin(const Image& image, const std::string& format);
    /// Records `image`, the result of `step`, after the current state. Returns false if it cannot be written.
    /// Redo states are deleted before, the oldest state of a full history only after `image` is written.
    bool push(const Image& image, const std::string& format, std::int64_t milliseconds, StepName step,
              Writing writing = Writing::Now);
    /// Writes one state file that was postponed. Returns false if there is none.
    bool writeNext() { return m_files.writeNext(); }

    bool hasState(std::int64_t index) const { return index >= 0 && index < std::ssize(paths); }
    /// The step from state `index - 1` to state `index`; Unnamed if either does not exist.
    StepName stepTo(std::int64_t index) const;
    /// Moves to state `index` and returns its image. Returns nothing, without moving, if it cannot be read.
    std::optional<Image> moveTo(std::int64_t index);
    /// Whether the current state is the recorded image; false if another program has changed its file.
    bool isAsRecorded() const { return m_files.isAsWritten(paths[static_cast<std::size_t>(position)]); }

    /// Deletes all state files, but keeps `paths` and `position`.
    void removeFiles();
    /// Deletes one state file, but keeps its path in `paths`.
    void removeFile(const std::filesystem::path& path) { m_files.remove(path); }

private:
    void append(const std::filesystem::path& path, StepName step);
    bool write(const Image& image, const std::filesystem::path& path, const std::string& format,
               Writing writing);

    Platform& m_platform;
    std::vector<StepName> m_steps; // that made the states; resized with `paths` when a state is appended
    StateImageFiles m_files;
};

} // namespace complexion
