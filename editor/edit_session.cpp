// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/edit_session.h"

#include "imaging/base/fatal.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace complexion {

EditSession::Snapshot EditSession::snapshot() const {
    const std::scoped_lock lock(m_mutex);
    return {.image = m_image, .photo = m_photo, .settings = presentSettings()};
}

std::optional<EditSession::Snapshot> EditSession::beginRepair(std::optional<std::uint64_t> onlyPhoto) {
    const std::scoped_lock lock(m_mutex);
    if (onlyPhoto && *onlyPhoto != m_photo)
        return std::nullopt;
    isRepairing = true;
    return Snapshot{.image = m_image, .photo = m_photo, .settings = presentSettings()};
}

void EditSession::open(const OpenedPhoto& photo, const std::filesystem::path& file) {
    path = file;
    name = file.stem().string();
    extension = file.extension().string();
    if (!extension.empty())
        extension.erase(0, 1); // the dot
    reload(photo);
}

void EditSession::reload(const OpenedPhoto& photo) {
    noteFile(photo);
    install(photo.image, /*isNewPhoto*/ true);
}

void EditSession::noteFile(const OpenedPhoto& photo) {
    damage = photo.damage;
    m_formatByContent.clear();
    if (std::ranges::find(ImageTools::kAcceptedTypes, stateFormat()) == ImageTools::kAcceptedTypes.end())
        m_formatByContent = photo.extension;
}

void EditSession::setImage(const Image& image) {
    install(image, /*isNewPhoto*/ false);
}

void EditSession::install(const Image& image, bool isNewPhoto) {
    Image previous = image;
    {
        const std::scoped_lock lock(m_mutex);
        std::swap(previous, m_image);
        if (isNewPhoto) {
            m_source = image;
            ++m_photo;
        }
    }
    previous.forgetComputedUnlessShared(image);
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

std::string EditSession::stateFormat() const {
    std::string format = m_formatByContent.empty() ? extension : m_formatByContent;
    std::ranges::transform(format, format.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return format;
}

void EditSession::setSettings(const EditSettings& settings) {
    const std::scoped_lock lock(m_mutex);
    m_settings = settings;
}

void EditSession::loseSettings(const std::string& missing) {
    const std::scoped_lock lock(m_mutex);
    m_settings.reset();
    m_missing = missing;
}

EditSettings EditSession::settings() const {
    const std::scoped_lock lock(m_mutex);
    return presentSettings();
}

EditSettings EditSession::presentSettings() const {
    if (!m_settings)
        fatal(m_missing + " is gone");
    return *m_settings;
}

void EditSession::pushState() {
    history.push(image(), stateFormat());
    isRepairing = false;
}

bool EditSession::moveTo(std::int64_t state) {
    const std::optional<Image> image = history.moveTo(state);
    if (image)
        setImage(*image);
    return image.has_value();
}

} // namespace complexion
