// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"
#include "editor/edit_step.h"
#include "editor/journal.h"
#include "editor/platform.h"
#include "editor/state_history.h"
#include "imaging/base/image.h"
#include "imaging/photo_files.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

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
        std::int64_t change = 0; // counts the working images of this photo
        EditSettings settings;
    };

    /// Fatal while there are no settings. Any thread.
    Snapshot snapshot() const;
    /// Sets the busy flag and takes the snapshot that the repair works on; neither when `onlyPhoto` is given
    /// and another photo is open by now. Any thread.
    std::optional<Snapshot> beginRepair(std::optional<std::uint64_t> onlyPhoto = std::nullopt);

    // The photo.

    /// Makes `photo`, which was read from the file at `file`, the photo, and starts its journal. `opened` is
    /// what the file was before it was read; without it no journal is kept.
    void open(const OpenedPhoto& photo, const std::filesystem::path& file,
              const std::optional<FileIdentity>& opened = std::nullopt);
    /// Replaces the photo by `photo`, which was read from the same file again.
    void reload(const OpenedPhoto& photo, const std::optional<FileIdentity>& opened = std::nullopt);

    Image image() const;
    /// Replaces the working image. Unless it is the result of the repair that was just noted, the journal
    /// ends: other images are no steps that could be repeated.
    void setImage(const Image& image);
    /// Notes a finished repair of `taken`, whose result is then set and pushed.
    void noteRepair(const Snapshot& taken, Point place);
    /// The photo as it was opened.
    Image source() const;
    std::uint64_t photoNumber() const;
    /// Counts the working images of this photo.
    std::int64_t changeCount() const;

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
    void beginHistory();
    /// Records the working image and clears the busy flag.
    void pushState();
    bool canUndo() const { return !isRepairing && history.hasState(history.position - 1); }
    bool canRedo() const { return !isRepairing && history.hasState(history.position + 1); }
    /// One state back or forth; false, with nothing changed, where that is not possible.
    bool undo() { return canUndo() && moveTo(history.position - 1); }
    bool redo() { return canRedo() && moveTo(history.position + 1); }

    // The journal.

    /// From now on steps are kept in `journal`, from the next photo on. Without one, none are.
    void setJournal(std::unique_ptr<Journal> journal) { m_journal = std::move(journal); }
    /// Null where none is kept.
    Journal* journal() const { return m_journal.get(); }
    /// The photo is shown through another effect.
    void noteEffect(int effect);
    /// The work is done with: nothing of it is kept.
    void forgetWork();

    /// Repeats the steps of an abandoned journal, whose photo has just been opened: picture, history and
    /// position are then what they were. The states' files are left to `writeNextState`. Returns the effect
    /// that the photo was shown through; nothing when a step is not possible, and the session is then to be
    /// opened anew.
    std::optional<int> replay(const std::vector<EditStep>& steps);
    /// Goes on in the journal whose steps were replayed.
    void resumeJournal(const AbandonedJournal& abandoned, const FileIdentity& opened);
    /// Writes one state's file that `replay` has left; false when there is none.
    bool writeNextState() { return history.writeNext(); }

private:
    void install(const Image& image, bool isNewPhoto);
    void noteFile(const OpenedPhoto& photo);
    void beginJournal(const std::optional<FileIdentity>& opened);
    void note(const EditStep& step);
    bool moveTo(std::int64_t state);
    EditSettings presentSettings() const; // the lock is held

    std::string m_formatByContent; // empty where the photo's name says its format

    mutable std::mutex m_mutex;
    Image m_image;
    Image m_source;
    std::uint64_t m_photo = 0;
    std::int64_t m_change = 0;
    std::optional<EditSettings> m_settings;
    std::string m_missing = "the settings";

    std::unique_ptr<Journal> m_journal;
    int m_effect = 0;
    std::optional<std::int64_t> m_repairMilliseconds; // of the repair whose state is to be pushed
};

} // namespace complexion
