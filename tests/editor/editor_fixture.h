// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/view_controller.h"
#include "imaging/image_tools.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/folder_watch.h"
#include "tests/fakes/manual_queues.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <memory>

namespace complexion {

inline constexpr PointSize kRootSize{400, 300};
/// The size of the photo that most tests open; it fills the root view at five points per pixel.
inline constexpr PixelSize kPhotoSize{80, 60};

/// The controller with real controls and a fake system.
class EditorTest : public testing::Test {
protected:
    EditorTest() : EditorTest(nullptr) {}
    /// Uses `others` instead of the manual queues.
    explicit EditorTest(Queues* others);
    ~EditorTest() override;

    /// Loads the controller, as the window does. Tests of loading override it.
    void SetUp() override;

    // Photos.

    /// Writes a photo to the photos' folder, in the format of its extension.
    std::filesystem::path makePhoto(const std::string& name, const Image& image) const;
    /// A PNG of kPhotoSize with three blemishes.
    std::filesystem::path makePhoto(const std::string& name = "portrait.png") const;
    static Image photo();
    /// The centres of the photo's blemishes.
    static const std::vector<PixelPosition>& blemishes();

    // User actions. They expect the questions that must appear and answer "Yes".

    void openThroughPanel(const std::filesystem::path& path);
    bool drop(const std::filesystem::path& path);
    void reload();
    /// Presses and releases the mouse at a point of the root view.
    void click(Point inRootView, double seconds = 0.1);
    void clickPixel(PixelPosition position, double seconds = 0.1);
    /// Clicks on a blemish of the photo and runs the repair.
    void retouch(std::size_t blemish);
    void drag(double deltaX, double deltaY);
    void selectEffect(int index);
    void save(const std::filesystem::path& path);

    // Observations.

    /// The point of the root view that shows the centre of a pixel of the working image.
    Point shownAt(PixelPosition position) const;
    std::vector<std::string> stateFiles() const;
    const std::filesystem::path& currentPath() const;
    /// The image that the view shows.
    Image shown() const;

    /// What a refused operation must not change, except for the images.
    struct ObservableState {
        std::vector<std::filesystem::path> paths;
        std::int64_t currenState = 0;
        std::string name;
        std::filesystem::path path;
        std::string extension;
        int effect = 0;
        bool hintHidden = false;
        bool helpHidden = false;
        Frame frame;
        std::vector<std::string> files;
        bool operator==(const ObservableState&) const = default;
    };
    ObservableState observableState() const;
    /// Runs `work` and expects that it changes neither the observable state nor the working and shown images.
    void expectUnchangedBy(const std::function<void()>& work);

    FakePlatform platform;
    FakeDialogs dialogs;
    ManualQueues queues;
    std::unique_ptr<QWidget> root;
    CustomImageView* imageView = nullptr;
    std::vector<Box*> boxes; // all eleven, in the order of their outlets
    std::shared_ptr<ViewController> controller;
};

} // namespace complexion
