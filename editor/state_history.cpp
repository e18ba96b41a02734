// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/state_history.h"

#include "imaging/base/checked.h"

namespace complexion {

namespace {

constexpr double kMillisecondsPerSecond = 1000;

} // namespace

std::int64_t StateHistory::milliseconds() const {
    return truncateToInt64(m_platform.secondsSince1970() * kMillisecondsPerSecond,
                           "the clock is out of range");
}

std::filesystem::path StateHistory::makePath(const std::string& format, std::int64_t milliseconds) const {
    return m_platform.temporaryDirectory() / ("stateImage" + std::to_string(milliseconds) + "." + format);
}

bool StateHistory::write(const Image& image, const std::filesystem::path& path, const std::string& format,
                         Writing writing) {
    if (writing == Writing::Now)
        return m_files.write(image, path, format);
    if (writing == Writing::Later)
        m_files.writeLater(image, path, format);
    return writing == Writing::Later;
}

bool StateHistory::begin(const Image& image, const std::string& format) {
    removeFiles();
    paths.clear();
    const std::filesystem::path path = makePath(format, milliseconds());
    if (!m_files.write(image, path, format))
        return false;
    append(path, StepName::Unnamed);
    position = 0;
    return true;
}

bool StateHistory::push(const Image& image, const std::string& format, std::int64_t milliseconds,
                        StepName step, Writing writing) {
    const std::filesystem::path path = makePath(format, milliseconds);
    if (position < bound) {
        // Redo states are deleted first, and stay deleted if writing fails.
        for (std::int64_t i = std::ssize(paths) - 1; i > position; --i) {
            removeFile(paths[static_cast<std::size_t>(i)]);
            paths.pop_back();
        }
        if (!write(image, path, format, writing))
            return false;
        append(path, step);
        ++position;
        return true;
    }
    if (!write(image, path, format, writing))
        return false;
    // The history is full: drop the oldest state, but only after the new one is written.
    if (paths.empty())
        fatal("the oldest state of an empty history is dropped");
    removeFile(paths.front());
    paths.erase(paths.begin());
    if (!m_steps.empty())
        m_steps.erase(m_steps.begin());
    append(path, step);
    return true;
}

void StateHistory::append(const std::filesystem::path& path, StepName step) {
    paths.push_back(path);
    m_steps.resize(paths.size());
    m_steps.back() = step;
}

StepName StateHistory::stepTo(std::int64_t index) const {
    const bool isKnown = hasState(index - 1) && hasState(index) && index < std::ssize(m_steps);
    return isKnown ? m_steps[static_cast<std::size_t>(index)] : StepName::Unnamed;
}

std::optional<Image> StateHistory::moveTo(std::int64_t index) {
    std::optional<Image> image = m_files.read(paths[static_cast<std::size_t>(index)]);
    if (image)
        position = index;
    return image;
}

void StateHistory::removeFiles() {
    for (const auto& path : paths)
        removeFile(path);
}

} // namespace complexion
