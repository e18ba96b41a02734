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
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace complexion {

/// The photo being edited, its history and journal, and the settings of the next repair. Independent of any
/// widget.
///
/// Background work accesses the session only through `beginRepair`, which copies the image, the photo number
/// and the settings under one lock, so that they are consistent. All other members are for the main thread.
class EditSession {
public:
    /// `platform` must outlive the session.
    explicit EditSession(Platform& platform) : history(platform) {}

    /// A consistent copy of what background work needs.
    struct Snapshot {
        Image image;             // the working image, without any effect
        std::uint64_t photo = 0; // incremented by every load and reload; 0 before the first
        std::int64_t change = 0; // incremented by every change of this photo's working image
        EditSettings settings;
    };

    /// Sets the busy flag and returns the snapshot to repair. Does nothing if `onlyPhoto` is given and is no
    /// longer the current photo number. Fatal if there are no settings. Callable from any thread.
    std::optional<Snapshot> beginRepair(std::optional<std::uint64_t> onlyPhoto = std::nullopt);

    // The photo.

    /// Sets `photo`, read from `file`, as the photo and begins its journal. `opened` is the file's identity
    /// before it was read; without it no journal is kept.
    void open(const OpenedPhoto& photo, const std::filesystem::path& file,
              const std::optional<FileIdentity>& opened = std::nullopt);
    /// Replaces the photo with `photo`, read again from the same file.
    void reload(const OpenedPhoto& photo, const std::optional<FileIdentity>& opened = std::nullopt);

    Image image() const;
    /// Replaces the working image. Ends the journal, unless the image is the result of the repair recorded
    /// just before: only recorded steps can be replayed.
    void setImage(const Image& image);
    /// Records a finished repair of `repaired` in the journal, at a place or along a stroke. `setImage` and
    /// `pushState` with its result must follow.
    void recordRepair(const Snapshot& repaired, std::span<const Point> points);
    void recordRepair(const Snapshot& repaired, Point place) { recordRepair(repaired, {&place, 1}); }
    /// The photo as it was opened.
    Image source() const;
    std::uint64_t photoNumber() const;
    /// Incremented by every change of this photo's working image.
    std::int64_t changeCount() const;
    /// Records that the working image has been saved with `effect`, an index into kEffectTitles.
    void markSaved(int effect);
    /// Whether closing the photo would lose something: the working image with `effect` has not been saved,
    /// nor is it the photo as it was opened.
    bool hasUnsavedWork(int effect) const;

    std::filesystem::path path; // of the photo; empty while none is open
    std::string name;           // file name without folder and extension
    std::string extension;      // as in the path, case kept
    /// Set if the photo's file is damaged and parts of the picture are missing.
    std::optional<Error> damage;
    /// The format of the photo's states and results, as an extension in lower case: that of the file name, or
    /// of the content if the former is not an accepted type.
    std::string stateFormat() const;

    /// True while a repair is being computed.
    std::atomic<bool> isRepairing = false;

    // The settings.

    void setSettings(const EditSettings& settings);
    /// Clears the settings, because the control `missing`, which they are read from, has been destroyed.
    void clearSettings(const std::string& missing);
    /// Fatal if there are none, with the name of the missing control. Callable from any thread.
    EditSettings settings() const;

    // The history.

    StateHistory history;

    /// Starts a new history with the working image as its only state.
    void beginHistory();
    /// Records the working image and clears the busy flag.
    void pushState();
    bool canUndo() const { return !isRepairing && history.hasState(history.position - 1); }
    bool canRedo() const { return !isRepairing && history.hasState(history.position + 1); }
    /// Moves one state back or forward. Returns false, with nothing changed, if that is not possible.
    bool undo() { return canUndo() && moveTo(history.position - 1); }
    bool redo() { return canRedo() && moveTo(history.position + 1); }
    /// The step that undo or redo would take, whether or not a repair is in progress.
    StepName undoStep() const { return history.stepTo(history.position); }
    StepName redoStep() const { return history.stepTo(history.position + 1); }

    // The journal.

    /// Records the steps of the next photo and later ones in `journal`; null records none.
    void setJournal(std::unique_ptr<Journal> journal) { m_journal = std::move(journal); }
    /// Null if no journal is kept.
    Journal* journal() const { return m_journal.get(); }
    /// Records the effect that the photo is shown with, an index into kEffectTitles.
    void recordEffect(int effect);
    /// Deletes the journal: the work is finished or discarded.
    void discardJournal();

    /// Replays the steps of an abandoned journal on its photo, which has just been opened. Restores the
    /// working image, the history and the position in it; `writeNextState` writes the state files. Returns
    /// the last effect; nothing if a step cannot be applied, after which the photo must be opened again.
    std::optional<int> replay(const std::vector<EditStep>& steps);
    /// Appends further steps to the replayed journal.
    void resumeJournal(const AbandonedJournal& abandoned, const FileIdentity& opened);
    /// Writes one state file that `replay` left unwritten. Returns false if there is none.
    bool writeNextState() { return history.writeNext(); }

private:
    void install(const Image& image, bool isNewPhoto);
    void setFileInfo(const OpenedPhoto& photo);
    void beginJournal(const std::optional<FileIdentity>& opened);
    void journalStep(const EditStep& step);
    bool moveTo(std::int64_t state);
    EditSettings settingsLocked() const; // m_mutex must be held

    std::string m_formatByContent; // empty if the file name's extension is an accepted type

    mutable std::mutex m_mutex;
    Image m_image;
    Image m_source;
    std::uint64_t m_photo = 0;
    std::int64_t m_change = 0;
    std::optional<std::pair<std::int64_t, int>> m_saved; // change and effect of the last save
    std::optional<EditSettings> m_settings;
    std::string m_missing = "the settings";

    std::unique_ptr<Journal> m_journal;
    int m_effect = 0;
    /// A repair whose state is not pushed yet.
    struct RecordedRepair {
        std::int64_t milliseconds = 0;
        StepName step = StepName::Unnamed;
    };
    std::optional<RecordedRepair> m_recordedRepair;
};

} // namespace complexion
