// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/connections.h"
#include "imaging/image_tools.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/manual_queues.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <memory>

namespace complexion {

/// The whole window with its controller, on a fake system.
class WindowTest : public testing::Test {
protected:
    WindowTest() {
        connectWindow(window, *controller, dialogs);
        window.resize(1000, 700);
        window.show();
    }
    ~WindowTest() override {
        controller->windowWillClose();
        queues.clear();
    }

    /// Opens a photo of 200 by 140 pixels with a blemish in its centre.
    void open() {
        const std::filesystem::path path = platform.photos() / "face.png";
        ASSERT_TRUE(ImageTools::SaveImage(skinWithBlemishes({200, 140}, {{70, 100}}), path, "png"));
        controller->OpenFile(path);
        ASSERT_TRUE(controller->hasImage());
    }

    CustomImageView& photo() { return *window.rootView().imageView(); }
    SettingsBar& bar() { return *window.contents().boxEditSettings; }

    FakePlatform platform;
    FakeDialogs dialogs;
    ManualQueues queues;
    MainWindow window;
    std::shared_ptr<ViewController> controller =
        std::make_shared<ViewController>(&window.rootView(), dialogs, platform, queues);
};

} // namespace complexion
