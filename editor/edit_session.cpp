// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/edit_session.h"

#include "imaging/base/fatal.h"
#include "imaging/base/lower_case.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <utility>

namespace complexion {

std::optional<EditSession::Snapshot> EditSession::beginRepair(std::optional<std::uint64_t> onlyPhoto) {
    const std::scoped_lock lock(m_mutex);
    if (onlyPhoto && *onlyPhoto != m_photo)
        return std::nullopt;
    isRepairing = true;
    return Snapshot{.image = m_image, .photo = m_photo, .change = m_change, .settings = settingsLocked()};
}

void EditSession::open(const OpenedPhoto& photo, const std::filesystem::path& file,
                       const std::optional<FileIdentity>& opened) {
    path = file;
    name = file.stem().string();
    extension = file.extension().string();
    if (!extension.empty())
        extension.erase(0, 1); // the dot
    reload(photo, opened);
}

void EditSession::reload(const OpenedPhoto& photo, const std::optional<FileIdentity>& opened) {
    setFileInfo(photo);
    install(photo.image, /*isNewPhoto*/ true);
    beginJournal(opened);
}

void EditSession::setFileInfo(const OpenedPhoto& photo) {
    damage = photo.damage;
    m_formatByContent.clear();
    if (std::ranges::find(ImageTools::kAcceptedTypes, stateFormat()) == ImageTools::kAcceptedTypes.end())
        m_formatByContent = photo.extension;
}

void EditSession::setImage(const Image& image) {
    install(image, /*isNewPhoto*/ false);
    if (m_journal && !m_recordedRepair)
        m_journal->end();
}

void EditSession::recordRepair(const Snapshot& repaired, std::span<const Point> points) {
    // Recorded before the state file is written, which can take long for a large file.
    m_recordedRepair =
        RecordedRepair{.milliseconds = history.milliseconds(), .step = stepNameOf(repaired.settings.style)};
    journalStep(RepairStep{.place = points.front(),
                           .stroke = {points.begin() + 1, points.end()},
                           .repair = Repair::of(repaired.settings),
                           .changesBack = changeCount() - repaired.change,
                           .stateMilliseconds = m_recordedRepair->milliseconds});
}

void EditSession::install(const Image& image, bool isNewPhoto) {
    Image previous = image;
    {
        const std::scoped_lock lock(m_mutex);
        std::swap(previous, m_image);
        if (isNewPhoto) {
            m_source = image;
            m_saved.reset();
            ++m_photo;
        }
        m_change = isNewPhoto ? 0 : m_change + 1;
    }
    previous.dropCachesUnlessShared(image);
}

Image EditSession::image() const {
    const std::scoped_lock lock(m_mutex);
    return m_image;
}

Image EditSession::source() const {
    const std::scoped_lock lock(m_mutex);
    return m_source;
}

std::uint64_t EditSession::photoNumber() const {
    const std::scoped_lock lock(m_mutex);
    return m_photo;
}

std::int64_t EditSession::changeCount() const {
    const std::scoped_lock lock(m_mutex);
    return m_change;
}

void EditSession::markSaved(int effect) {
    m_saved = {changeCount(), effect};
}

bool EditSession::hasUnsavedWork(int effect) const {
    const bool isAsOpened = effect == 0 && image().isSameObject(source());
    return !isAsOpened && m_saved != std::pair(changeCount(), effect);
}

std::string EditSession::stateFormat() const {
    return lowerCase(m_formatByContent.empty() ? extension : m_formatByContent);
}

void EditSession::setSettings(const EditSettings& settings) {
    const std::scoped_lock lock(m_mutex);
    m_settings = settings;
}

void EditSession::clearSettings(const std::string& missing) {
    const std::scoped_lock lock(m_mutex);
    m_settings.reset();
    m_missing = missing;
}

EditSettings EditSession::settings() const {
    const std::scoped_lock lock(m_mutex);
    return settingsLocked();
}

EditSettings EditSession::settingsLocked() const {
    if (!m_settings)
        fatal(m_missing + " is gone");
    return *m_settings;
}

void EditSession::beginHistory() {
    if (!history.begin(image(), stateFormat()))
        journalStep(StateLostStep{history.position});
}

void EditSession::pushState() {
    const std::optional<RecordedRepair> repair = std::exchange(m_recordedRepair, std::nullopt);
    const std::int64_t milliseconds = repair ? repair->milliseconds : history.milliseconds();
    if (!history.push(image(), stateFormat(), milliseconds, repair ? repair->step : StepName::Unnamed))
        journalStep(StateLostStep{history.position});
    isRepairing = false;
}

bool EditSession::moveTo(std::int64_t state) {
    const std::optional<Image> image = history.moveTo(state);
    if (!image)
        return false;
    install(*image, /*isNewPhoto*/ false);
    if (history.isAsRecorded())
        journalStep(MoveStep{state});
    else if (m_journal)
        m_journal->end(); // the state file was changed by another program and cannot be replayed
    return true;
}

void EditSession::beginJournal(const std::optional<FileIdentity>& opened) {
    m_effect = 0;
    m_recordedRepair.reset();
    if (!m_journal)
        return;
    if (opened)
        m_journal->begin(path, *opened);
    else
        m_journal->forget();
}

void EditSession::journalStep(const EditStep& step) {
    if (m_journal)
        m_journal->append(step);
}

void EditSession::recordEffect(int effect) {
    if (effect != std::exchange(m_effect, effect))
        journalStep(EffectStep{effect});
}

void EditSession::discardJournal() {
    if (m_journal)
        m_journal->forget();
}

} // namespace complexion
