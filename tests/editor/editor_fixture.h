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
/// Of the photo that most tests open; it fills the root view at five points per pixel.
inline constexpr PixelSize kPhotoSize{80, 60};

/// The editor with real controls, and with the system around it played by the test.
class EditorTest : public testing::Test {
protected:
    EditorTest() : EditorTest(nullptr) {}
    /// With other queues than the manual ones.
    explicit EditorTest(Queues* others);
    ~EditorTest() override;

    /// Loads the controller, as the window does. Tests of what comes before override it.
    void SetUp() override;

    // Photos.

    /// Writes a photo into the photos' folder, in the format that its name's extension says.
    std::filesystem::path makePhoto(const std::string& name, const Image& image) const;
    /// A PNG of kPhotoSize with three blemishes.
    std::filesystem::path makePhoto(const std::string& name = "portrait.png") const;
    static Image photo();
    /// Where the photo's blemishes are.
    static const std::vector<PixelPosition>& blemishes();

    // What the user does. Questions that must come are expected here and answered with "Yes".

    void openThroughPanel(const std::filesystem::path& path);
    bool drop(const std::filesystem::path& path);
    void reload();
    /// Presses and releases the mouse at a point of the root view.
    void click(Point inRootView, double seconds = 0.1);
    void clickPixel(PixelPosition position, double seconds = 0.1);
    /// Clicks a blemish of the photo away, and waits for it.
    void retouch(std::size_t blemish);
    void drag(double deltaX, double deltaY);
    void selectEffect(int index);
    void save(const std::filesystem::path& path);

    // What there is to see.

    /// The point of the root view at which the middle of a pixel of the working image is shown.
    Point shownAt(PixelPosition position) const;
    std::vector<std::string> stateFiles() const;
    const std::filesystem::path& currentPath() const;
    /// The picture on the screen.
    Image shown() const;

    /// What an operation must not change when it is refused: history, picture, source, effect, boxes, zoom,
    /// files.
    struct Everything {
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
        bool operator==(const Everything&) const = default;
    };
    Everything everything() const;
    /// Runs `work` and checks that nothing of this was changed by it, nor what the screen shows.
    void expectUntouchedBy(const std::function<void()>& work);

    FakePlatform platform;
    FakeDialogs dialogs;
    ManualQueues queues;
    std::unique_ptr<QWidget> root;
    CustomImageView* imageView = nullptr;
    std::vector<Box*> boxes; // all eleven, in the order of the controller's outlets
    std::shared_ptr<ViewController> controller;
};

} // namespace complexion
