// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/aim.h"
#include "tests/editor/editor_fixture.h"

#include <memory>

namespace complexion {

/// An editor with an aim over its photo, and what the aim announced.
class AimFixture : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        disc = new EditDisc(imageView);
        aim = std::make_unique<Aim>(*controller, disc, queues);
        QObject::connect(aim.get(), &Aim::announced, aim.get(),
                         [this](const QString& text) { announcements << text; });
    }

    EditDisc* disc = nullptr; // owned by the view
    std::unique_ptr<Aim> aim;
    QStringList announcements;
};

} // namespace complexion
