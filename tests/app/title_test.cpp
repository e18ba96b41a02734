// SPDX-License-Identifier: GPL-3.0-or-later

// What the window says about the photo: its name, whether it has unsaved work, and whether it is the
// original.
#include "tests/app/window_fixture.h"

#include <QTest>

namespace complexion {
namespace {

class Title : public WindowTest {
protected:
    void repair() {
        RootView& root = window.rootView();
        QTest::mouseClick(&root, Qt::LeftButton, Qt::NoModifier, root.rect().center());
        queues.runAll();
    }
};

TEST_F(Title, TheTitleNamesThePhoto) {
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Complexion"));
    open();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("face.png[*] — Complexion"));
}

TEST_F(Title, TheTitleMarksUnsavedWork) {
    open();
    EXPECT_FALSE(window.isWindowModified());
    repair();
    EXPECT_TRUE(window.isWindowModified());
    window.actions().undo->trigger();
    EXPECT_FALSE(window.isWindowModified());
    bar().comboEffect->setCurrentIndex(3);
    Q_EMIT bar().comboEffect->activated(3);
    EXPECT_TRUE(window.isWindowModified());

    const std::filesystem::path saved = platform.photos() / "saved.png";
    dialogs.expectSavePanel({{"png"}, "face_retouched.png"}, chosen(saved));
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    window.actions().saveImage->trigger();
    EXPECT_FALSE(window.isWindowModified());
    window.actions().redo->trigger();
    EXPECT_TRUE(window.isWindowModified());
}

TEST_F(Title, AFailedSaveLeavesTheWorkUnsaved) {
    open();
    repair();
    dialogs.expectSavePanel({{"png"}, "face_retouched.png"}, chosen(platform.photos() / "gone/saved.png"));
    dialogs.expectAlert(kSaveFailure, AlertStyle::Warning);
    window.actions().saveImage->trigger();
    EXPECT_TRUE(window.isWindowModified());
}

TEST_F(Title, AMarkInAFileNameIsNoPlaceOfTheMark) {
    window.showState({.hasImage = true, .fileName = QStringLiteral("a[*].png")});
    EXPECT_EQ(window.windowTitle(), QStringLiteral("a[*][*].png[*] — Complexion"));
}

TEST_F(Title, TheOriginalIsNamedWhileItIsShown) {
    open();
    EXPECT_FALSE(window.originalSign().isVisible());
    controller->ShowSource(true);
    EXPECT_TRUE(window.originalSign().isVisible());
    EXPECT_EQ(window.originalSign().text(), QStringLiteral("Original"));
    EXPECT_TRUE(window.rootView().rect().contains(window.originalSign().geometry()));
    controller->ShowSource(false);
    EXPECT_FALSE(window.originalSign().isVisible());
}

} // namespace
} // namespace complexion
