// SPDX-License-Identifier: GPL-3.0-or-later

// The edit history: every state of the working image as a file, and the steps back and forth.
#include "editor/outlet.h"
#include "editor/view_controller.h"
#include "imaging/base/checked.h"

#include <algorithm>
#include <cctype>

namespace complexion {

namespace {

constexpr double kMillisecondsPerSecond = 1000;

bool isIndexOf(std::int64_t index, const std::vector<std::filesystem::path>& list) {
    return index >= 0 && index < std::ssize(list);
}

} // namespace

std::string ViewController::stateImageFormat() const {
    std::string format = originalImageExtension;
    std::ranges::transform(format, format.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return format;
}

std::filesystem::path ViewController::MakeStateImagePath() {
    const std::int64_t milliseconds =
        truncateToInt64(m_platform.secondsSince1970() * kMillisecondsPerSecond, "the clock is out of range");
    return m_platform.temporaryDirectory() /
           ("stateImage" + std::to_string(milliseconds) + "." + stateImageFormat());
}

void ViewController::BeginEditHistory() {
    for (const auto& path : stateImagesPath)
        RemoveStateImageWithImagePath(path);
    stateImagesPath.clear();
    const std::filesystem::path path = MakeStateImagePath();
    if (m_stateImages.write(originalImage(), path, stateImageFormat())) {
        stateImagesPath.push_back(path);
        currenState = 0;
    }
    Q_EMIT stateChanged();
}

void ViewController::PushStateImage() {
    const std::filesystem::path path = MakeStateImagePath();
    if (currenState < numberOfStates) {
        // States that were stepped back from go before the new one is written, and stay gone if that fails.
        for (std::int64_t i = std::ssize(stateImagesPath) - 1; i > currenState; --i) {
            RemoveStateImageWithImagePath(stateImagesPath[static_cast<std::size_t>(i)]);
            stateImagesPath.pop_back();
        }
        if (m_stateImages.write(originalImage(), path, stateImageFormat())) {
            stateImagesPath.push_back(path);
            ++currenState;
        }
    } else if (m_stateImages.write(originalImage(), path, stateImageFormat())) {
        // The history is full: the oldest state goes, but only for one that is safely written.
        if (stateImagesPath.empty())
            fatal("the oldest state of an empty history is dropped");
        RemoveStateImageWithImagePath(stateImagesPath.front());
        stateImagesPath.erase(stateImagesPath.begin());
        stateImagesPath.push_back(path);
    }
    imageProcessing = false;
    Q_EMIT stateChanged();
}

void ViewController::RemoveStateImages() {
    for (const auto& path : stateImagesPath)
        RemoveStateImageWithImagePath(path);
}

void ViewController::RemoveStateImageWithImagePath(const std::filesystem::path& path) {
    m_stateImages.remove(path);
}

// After a first state that could not be written, `currenState` may lie outside the list: the index itself is
// checked.

bool ViewController::canUndo() const {
    return hasImage() && !imageProcessing && isIndexOf(currenState - 1, stateImagesPath);
}

bool ViewController::canRedo() const {
    return hasImage() && !imageProcessing && isIndexOf(currenState + 1, stateImagesPath);
}

void ViewController::OnUndo(QObject*) {
    if (canUndo())
        stepTo(currenState - 1);
}

void ViewController::OnRedo(QObject*) {
    if (canRedo())
        stepTo(currenState + 1);
}

void ViewController::stepTo(std::int64_t state) {
    const std::optional<Image> image = m_stateImages.read(stateImagesPath[static_cast<std::size_t>(state)]);
    if (!image)
        return; // the picture and the place in the history stay as they are
    currenState = state;
    setOriginalImage(*image);
    ApplyEffectsOnPreview();
    Q_EMIT stateChanged();
}

} // namespace complexion
