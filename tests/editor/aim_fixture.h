// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/aim.h"
#include "tests/editor/editor_fixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <functional>
#include <memory>

namespace complexion {

/// An editor with an aim over its photo, and what the aim announced.
class AimFixture : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        disc = new EditDisc(imageView);
        suggested = std::make_unique<Suggestions>(queues);
        aim = std::make_unique<Aim>(*controller, *suggested, disc, queues);
        QObject::connect(aim.get(), &Aim::announced, aim.get(),
                         [this](const QString& text) { announcements << text; });
    }

    EditDisc* disc = nullptr; // owned by the view
    std::unique_ptr<Suggestions> suggested;
    std::unique_ptr<Aim> aim;
    QStringList announcements;
};

/// An aim that is controlled as the window does.
class AimTest : public AimFixture {
protected:
    void SetUp() override {
        AimFixture::SetUp();
        QObject::connect(aim.get(), &Aim::picked, aim.get(), [this](const QColor& color) { picked = color; });
    }

    void open() { openThroughPanel(makePhoto()); }

    void pointAtPixel(PixelPosition position) {
        aim->pointAt(shownAt(position));
        queues.runAll();
    }

    /// Processes events until the condition holds, with the pointer at rest.
    void restUntil(const std::function<bool()>& condition) {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && timer.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        EXPECT_TRUE(condition());
    }
    void restUntilPreview() {
        restUntil([this] { return imageView->isShowingReplacement(); });
    }

    QColor picked;
};

} // namespace complexion
