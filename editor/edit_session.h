// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"
#include "editor/platform.h"
#include "editor/state_history.h"
#include "imaging/base/image.h"
#include "imaging/photo_files.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

namespace complexion {

/// The photo that is being edited, without a window: its pixels and where they came from, the history, and
/// the settings of the next repair.
///
/// Work in the background sees the session only through `snapshot` and `beginRepair`, which copy under one
/// lock: the image, the number of its photo and the settings always belong together. Everything else is for
/// the main thread.
class EditSession {
public:
    /// `platform` outlives the session.
    explicit EditSession(Platform& platform) : history(platform) {}

    /// What work in the background needs, as it was at one moment.
    struct Snapshot {
        Image image;             // the working image, without any effect
        std::uint64_t photo = 0; // counts every load and reload; 0 before the first
        EditSettings settings;
    };

    /// Fatal while there are no settings. Any thread.
    Snapshot snapshot() const;
    /// Sets the busy flag and takes the snapshot that the repair works on; neither when `onlyPhoto` is given
    /// and another photo is open by now. Any thread.
    std::optional<Snapshot> beginRepair(std::optional<std::uint64_t> onlyPhoto = std::nullopt);

    // The photo.

    /// Makes `photo`, which was opened from the file at `file`, the one that is edited.
    void open(const OpenedPhoto& photo, const std::filesystem::path& file);
    /// Replaces the photo by `photo`, which was opened from the same file again.
    void reload(const OpenedPhoto& photo);

    Image image() const;
    void setImage(const Image& image);
    /// The photo as it was opened.
    Image source() const;
    std::uint64_t photoNumber() const;

    std::filesystem::path path; // of the photo; empty while none is open
    std::string name;           // file name without folder and extension
    std::string extension;      // as in the path, case kept
    /// What is wrong with the photo's file where parts of its picture are missing; nothing for a whole one.
    std::optional<Error> damage;
    /// The format of the photo's states and results, as an extension in lower case: what its name says, or
    /// its content where that is none of the accepted types.
    std::string stateFormat() const;

    /// True while a repair is being computed.
    std::atomic<bool> isRepairing = false;

    // The settings.

    void setSettings(const EditSettings& settings);
    /// There are none any more, because `missing`, a control that they are read from, is gone.
    void loseSettings(const std::string& missing);
    /// Fatal, naming what is missing, while there are none. Any thread.
    EditSettings settings() const;

    // The history.

    StateHistory history;

    /// Starts the history anew with the working image.
    void beginHistory() { history.begin(image(), stateFormat()); }
    /// Records the working image and clears the busy flag.
    void pushState();
    bool canUndo() const { return !isRepairing && history.hasState(history.position - 1); }
    bool canRedo() const { return !isRepairing && history.hasState(history.position + 1); }
    /// One state back or forth; false, with nothing changed, where that is not possible.
    bool undo() { return canUndo() && moveTo(history.position - 1); }
    bool redo() { return canRedo() && moveTo(history.position + 1); }

private:
    void install(const Image& image, bool isNewPhoto);
    void noteFile(const OpenedPhoto& photo);
    bool moveTo(std::int64_t state);
    EditSettings presentSettings() const; // the lock is held

    std::string m_formatByContent; // empty where the photo's name says its format

    mutable std::mutex m_mutex;
    Image m_image;
    Image m_source;
    std::uint64_t m_photo = 0;
    std::optional<EditSettings> m_settings;
    std::string m_missing = "the settings";
};

} // namespace complexion
