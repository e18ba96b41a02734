// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/file_names.h"

#include "app/file_panels.h"
#include "app/window_dialogs.h"
#include "tests/app/panel_fixture.h"
#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"
#include "tests/fakes/temporary_folder.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;

constexpr const char* kLatin1Name = "caf\xE9.png";

TEST(ShownName, OfAUtf8NameIsTheName) {
    EXPECT_EQ(shownName("caf\xC3\xA9 \xE5\x86\x99.png"), u"café 写.png"_s);
    EXPECT_EQ(shownName("cafe\xCC\x81.png"), u"cafe\u0301.png"_s);
}

TEST(ShownName, OfAnotherNameIsReadAsLatin1) {
    EXPECT_EQ(shownName(kLatin1Name), u"café.png"_s);
    EXPECT_EQ(shownName("\xFF\xFE\x80.png"), u"ÿþ\uFFFD.png"_s);
}

/// The whole window with the real panels.
class NamesThatAreNotUtf8 : public WindowTest {
protected:
    /// Writes a photo under that name.
    std::filesystem::path makePhoto(const std::string& name) {
        const std::filesystem::path plain = platform.photos() / "plain.png";
        EXPECT_TRUE(ImageTools::SaveImage(skinWithBlemishes({40, 30}, {{15, 20}}), plain, "png"));
        std::filesystem::create_directories((platform.photos() / name).parent_path());
        std::filesystem::copy_file(plain, platform.photos() / name);
        return platform.photos() / name;
    }

    std::filesystem::path folder() const { return platform.photos(); }

    static void typeName(FilePanel& panel, const QString& name) {
        test::activate(panel); // only with the focus, typing replaces the selection in the list
        auto* const field = panel.findChild<QLineEdit*>(u"fileNameEdit"_s);
        field->setFocus();
        field->setText(name);
    }
};

TEST_F(NamesThatAreNotUtf8, AreReadableInTheTitle) {
    const std::filesystem::path path = makePhoto(kLatin1Name);
    controller->OpenFile(path);
    EXPECT_EQ(controller->originalImagePath, path);
    EXPECT_EQ(window.windowTitle(), u"café.png[*] — Complexion"_s);
}

TEST_F(NamesThatAreNotUtf8, AreListedAndChosenByteForByte) {
    const std::filesystem::path photo = makePhoto(kLatin1Name);
    OpenFilePanel panel({.allowedFileTypes = {"png"}}, folder(), dialogs);
    panel.show();
    test::waitUntilListed(panel);
    EXPECT_EQ(test::namesIn(panel), QStringList({u"café.png"_s, u"plain.png"_s}));
    QTreeView& list = test::listOf(panel);
    list.setCurrentIndex(list.model()->index(0, 0));
    EXPECT_EQ(panel.findChild<QLineEdit*>(u"fileNameEdit"_s)->text(), u"café.png"_s);
    test::accept(panel);
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    EXPECT_EQ(panel.chosenPath(), photo);
}

TEST_F(NamesThatAreNotUtf8, AreForgottenOnceTheFieldIsEdited) {
    makePhoto(kLatin1Name);
    OpenFilePanel panel({.allowedFileTypes = {"png"}}, folder(), dialogs);
    panel.show();
    test::waitUntilListed(panel);
    QTreeView& list = test::listOf(panel);
    list.setCurrentIndex(list.model()->index(0, 0));
    typeName(panel, u"plain.png"_s);
    test::accept(panel);
    EXPECT_EQ(panel.chosenPath(), platform.photos() / "plain.png");
}

TEST_F(NamesThatAreNotUtf8, OfFoldersAreEntered) {
    const std::filesystem::path photo = makePhoto("caf\xE9/face.png");
    OpenFilePanel panel({.allowedFileTypes = {"png"}}, folder(), dialogs);
    panel.show();
    test::waitUntilListed(panel);
    QTreeView& list = test::listOf(panel);
    EXPECT_EQ(test::namesIn(panel).front(), u"café"_s);
    Q_EMIT list.activated(list.model()->index(0, 0));
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.folder(), photo.parent_path());
    typeName(panel, u"face.png"_s);
    test::accept(panel);
    EXPECT_EQ(panel.chosenPath(), photo);
}

TEST_F(NamesThatAreNotUtf8, TypedIntoTheOpenPanelAreReportedAsMissing) {
    makePhoto(kLatin1Name);
    for (const QString& typed : {u"café.png"_s, u"caf\uFFFD.png"_s}) {
        OpenFilePanel panel({.allowedFileTypes = {"png"}}, folder(), dialogs);
        panel.show();
        typeName(panel, typed);
        dialogs.expectAlert(u"There is no file “%1”."_s.arg(typed).toStdString(), AlertStyle::Warning);
        test::accept(panel);
        EXPECT_TRUE(panel.isVisible());
        EXPECT_NE(panel.result(), QDialog::Accepted);
    }
}

TEST_F(NamesThatAreNotUtf8, CorruptedByAPanelShowTheLoadFailureAndLoseNothing) {
    open();
    const std::filesystem::path before = controller->originalImagePath;
    makePhoto(kLatin1Name);
    dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    dialogs.expectOpenPanel(chosen(platform.photos() / "caf\xEF\xBF\xBD.png"));
    dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
    controller->OnSelectImage(nullptr);
    EXPECT_EQ(controller->originalImagePath, before);
    EXPECT_TRUE(controller->hasImage());
}

TEST_F(NamesThatAreNotUtf8, AreProposedForTheResultInReadableForm) {
    SaveFilePanel panel({.allowedFileTypes = {"png"}, .nameFieldStringValue = "caf\xE9_retouched.png"},
                        folder(), {}, dialogs);
    panel.show();
    test::accept(panel);
    EXPECT_EQ(panel.chosenPath(), folder() / "café_retouched.png");
}

TEST_F(NamesThatAreNotUtf8, OfFoldersLetTheSavePanelStartThere) {
    const std::filesystem::path source = makePhoto("caf\xE9/face.png");
    WindowDialogs real(nullptr, [&source] { return source; });
    QTimer::singleShot(0, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->accept(); });
    const PanelAnswer answer =
        real.runSavePanel({.allowedFileTypes = {"png"}, .nameFieldStringValue = "face_retouched.png"});
    EXPECT_EQ(answer.url, source.parent_path() / "face_retouched.png");
}

} // namespace
} // namespace complexion
