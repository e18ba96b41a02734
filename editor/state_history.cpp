// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/state_history.h"

#include "imaging/base/checked.h"

namespace complexion {

namespace {

constexpr double kMillisecondsPerSecond = 1000;

} // namespace

std::filesystem::path StateHistory::makePath(const std::string& format) const {
    const std::int64_t milliseconds =
        truncateToInt64(m_platform.secondsSince1970() * kMillisecondsPerSecond, "the clock is out of range");
    return m_platform.temporaryDirectory() / ("stateImage" + std::to_string(milliseconds) + "." + format);
}

void StateHistory::begin(const Image& image, const std::string& format) {
    removeFiles();
    paths.clear();
    const std::filesystem::path path = makePath(format);
    if (!m_files.write(image, path, format))
        return;
    paths.push_back(path);
    position = 0;
}

void StateHistory::push(const Image& image, const std::string& format) {
    const std::filesystem::path path = makePath(format);
    if (position < bound) {
        // States that were stepped back from go before the new one is written, and stay gone if that fails.
        for (std::int64_t i = std::ssize(paths) - 1; i > position; --i) {
            removeFile(paths[static_cast<std::size_t>(i)]);
            paths.pop_back();
        }
        if (m_files.write(image, path, format)) {
            paths.push_back(path);
            ++position;
        }
    } else if (m_files.write(image, path, format)) {
        // The history is full: the oldest state goes, but only for one that is safely written.
        if (paths.empty())
            fatal("the oldest state of an empty history is dropped");
        removeFile(paths.front());
        paths.erase(paths.begin());
        paths.push_back(path);
    }
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
