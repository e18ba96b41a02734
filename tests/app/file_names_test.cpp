// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_names.h"

#include "app/file_panels.h"
#include "app/window_dialogs.h"
#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"
#include "tests/fakes/temporary_folder.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;

// Latin 1, and no UTF-8.
constexpr const char* kOldName = "caf\xE9.png";

TEST(ShownName, OfUtf8IsTheNameItself) {
    EXPECT_EQ(shownName("caf\xC3\xA9 \xE5\x86\x99.png"), u"café 写.png"_s);
    EXPECT_EQ(shownName("cafe\xCC\x81.png"), u"cafe\u0301.png"_s);
}

TEST(ShownName, OfAnythingElseIsReadAsLatin1) {
    EXPECT_EQ(shownName(kOldName), u"café.png"_s);
    EXPECT_EQ(shownName("\xFF\xFE\x80.png"), u"ÿþ\uFFFD.png"_s);
}

TEST(ReachableFolder, IsTheNearestThatTheToolkitCanName) {
    EXPECT_EQ(representableFolder("/photos/caf\xC3\xA9"), u"/photos/café"_s);
    EXPECT_EQ(representableFolder("/photos/caf\xE9/2019"), u"/photos"_s);
    EXPECT_EQ(representableFolder("/\xE9"), u"/"_s);
}

/// The whole window; its panels are the real ones.
class NamesThatAreNotUtf8 : public WindowTest {
protected:
    /// A photo under that name.
    std::filesystem::path makePhoto(const std::string& name) {
        const std::filesystem::path plain = platform.photos() / "plain.png";
        EXPECT_TRUE(ImageTools::SaveImage(skinWithBlemishes({40, 30}, {{15, 20}}), plain, "png"));
        std::filesystem::create_directories((platform.photos() / name).parent_path());
        std::filesystem::copy_file(plain, platform.photos() / name);
        return platform.photos() / name;
    }

    QString folder() const { return QString::fromStdString(platform.photos().string()); }

    static void confirm(QDialog& panel) { panel.accept(); }

    static void typeName(QFileDialog& panel, const QString& name) {
        test::activate(panel); // typing replaces a choice in the list only with the focus
        auto* const field = panel.findChild<QLineEdit*>(u"fileNameEdit"_s);
        field->setFocus();
        field->setText(name);
    }
};

TEST_F(NamesThatAreNotUtf8, StandReadablyInTheTitle) {
    const std::filesystem::path path = makePhoto(kOldName);
    controller->OpenFile(path);
    EXPECT_EQ(controller->originalImagePath, path);
    EXPECT_EQ(window.windowTitle(), u"café.png — Complexion"_s);
}

TEST_F(NamesThatAreNotUtf8, AreNotInTheOpenPanelAndTheOthersAre) {
    makePhoto(kOldName);
    makePhoto("other.png");
    OpenFilePanel panel({.allowedFileTypes = {"png"}}, folder(), dialogs);
    panel.show();
    const auto* const model = panel.findChild<QFileSystemModel*>();
    ASSERT_TRUE(model);
    const QModelIndex root = model->index(folder());
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->rowCount(root) > 0; }));
    QStringList names;
    for (int row = 0; row < model->rowCount(root); ++row)
        names += model->index(row, 0, root).data().toString();
    names.sort();
    EXPECT_EQ(names, QStringList({u"other.png"_s, u"plain.png"_s}));

    typeName(panel, u"other.png"_s);
    confirm(panel);
    EXPECT_EQ(panel.result(), QDialog::Accepted);
}

TEST_F(NamesThatAreNotUtf8, TypedIntoTheOpenPanelAreSaidToBeMissing) {
    makePhoto(kOldName);
    for (const QString& typed : {u"café.png"_s, u"caf\uFFFD.png"_s}) {
        OpenFilePanel panel({.allowedFileTypes = {"png"}}, folder(), dialogs);
        panel.show();
        typeName(panel, typed);
        dialogs.expectAlert(u"There is no file “%1”."_s.arg(typed).toStdString(), AlertStyle::Warning);
        confirm(panel);
        EXPECT_TRUE(panel.isVisible());
        EXPECT_NE(panel.result(), QDialog::Accepted);
    }
}

TEST_F(NamesThatAreNotUtf8, ComingOutOfAPanelDamagedShowTheLoadFailureAndLoseNothing) {
    open();
    const std::filesystem::path before = controller->originalImagePath;
    makePhoto(kOldName);
    dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    dialogs.expectOpenPanel(chosen(platform.photos() / "caf\xEF\xBF\xBD.png"));
    dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
    controller->OnSelectImage(nullptr);
    EXPECT_EQ(controller->originalImagePath, before);
    EXPECT_TRUE(controller->hasImage());
}

TEST_F(NamesThatAreNotUtf8, AreProposedForTheResultAsTheyAreShown) {
    SaveFilePanel panel({.allowedFileTypes = {"png"}, .nameFieldStringValue = "caf\xE9_retouched.png"},
                        folder(), {}, dialogs);
    panel.show();
    panel.accept();
    EXPECT_EQ(panel.chosenPath(), folder() + u"/café_retouched.png"_s);
}

TEST_F(NamesThatAreNotUtf8, OfFoldersLetTheSavePanelStartInTheNearestOtherOne) {
    const std::filesystem::path source = makePhoto("caf\xE9/face.png");
    WindowDialogs real(nullptr, [&source] { return source; });
    QTimer::singleShot(0, [] { confirm(*qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
    const PanelAnswer answer =
        real.runSavePanel({.allowedFileTypes = {"png"}, .nameFieldStringValue = "face_retouched.png"});
    EXPECT_EQ(answer.url, platform.photos() / "face_retouched.png");
}

} // namespace
} // namespace complexion
