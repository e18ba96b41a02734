// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/alert_dialog.h"
#include "app/file_panels.h"
#include "app/window_dialogs.h"
#include "tests/app/panel_fixture.h"
#include "tests/fakes/active_window.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace complexion {
namespace {

const Alert kQuestion{.messageText = "",
                      .informativeText = "Are you sure?",
                      .style = AlertStyle::Warning,
                      .buttons = {"Yes", "No"}};
const Alert kOutcome{.messageText = "",
                     .informativeText = kSaveSuccess,
                     .style = AlertStyle::Informational,
                     .buttons = {"OK"}};

/// Shows a real alert, performs `answer` on it, and returns its result.
template <class Answer>
int answered(const Alert& alert, const Answer& answer) {
    WindowDialogs dialogs(nullptr, [] { return std::filesystem::path(); });
    QTimer::singleShot(0, [&answer] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(dialog);
        answer(*dialog);
    });
    return dialogs.runAlert(alert);
}

void press(QWidget& dialog, const char* title) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
        if (button->text() == QString::fromLatin1(title))
            return button->click();
    ADD_FAILURE() << "no button " << title;
}

void type(QWidget& dialog, Qt::Key key) {
    QTest::keyClick(&dialog, key);
}

TEST(Alert, ReturnsThePressedButton) {
    EXPECT_EQ(answered(kQuestion, [](QWidget& dialog) { press(dialog, "Yes"); }), kFirstButton);
    EXPECT_EQ(answered(kQuestion, [](QWidget& dialog) { press(dialog, "No"); }), kSecondButton);
    EXPECT_EQ(answered(kOutcome, [](QWidget& dialog) { press(dialog, "OK"); }), kFirstButton);
}

TEST(Alert, EscapeMeansNo) {
    EXPECT_EQ(answered(kQuestion, [](QWidget& dialog) { type(dialog, Qt::Key_Escape); }), kSecondButton);
    EXPECT_EQ(answered(kOutcome, [](QWidget& dialog) { type(dialog, Qt::Key_Escape); }), kFirstButton);
}

TEST(Alert, ClosingItMeansNo) {
    EXPECT_EQ(answered(kQuestion, [](QWidget& dialog) { dialog.close(); }), kSecondButton);
}

TEST(Alert, AQuestionAWarningAndInformationLookDifferent) {
    const Alert warning{
        .messageText = "", .informativeText = "No.", .style = AlertStyle::Warning, .buttons = {"OK"}};
    const Alert information{
        .messageText = "", .informativeText = "No.", .style = AlertStyle::Informational, .buttons = {"OK"}};
    const Alert question{
        .messageText = "", .informativeText = "No.", .style = AlertStyle::Warning, .buttons = {"OK", "No"}};
    std::vector<QImage> icons;
    for (const auto& [alert, name] :
         {std::pair(warning, "alert-warning"), std::pair(information, "alert-information"),
          std::pair(question, "alert-question")}) {
        AlertDialog dialog(alert);
        auto* const icon = dialog.findChild<QWidget*>(QString::fromLatin1(name));
        ASSERT_TRUE(icon) << name;
        icons.push_back(icon->grab().toImage());
    }
    EXPECT_NE(icons[0], icons[1]);
    EXPECT_NE(icons[1], icons[2]);
    EXPECT_NE(icons[0], icons[2]);
}

TEST(Alert, ReturnMeansTheFirstButton) {
    EXPECT_EQ(answered(kQuestion, [](QWidget& dialog) { type(dialog, Qt::Key_Return); }), kFirstButton);
}

TEST(Alert, ShowsItsTextAndItsButtonsInOrder) {
    const AlertDialog dialog(kQuestion);
    const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels.front()->text(), QStringLiteral("Are you sure?"));
    const QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("Yes"));
    EXPECT_TRUE(buttons[0]->isDefault());
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("No"));
}

TEST(SavePanel, AppendsTheExtensionToATypedName) {
    EXPECT_EQ(withExtension(QStringLiteral("a"), {"jpg"}), QStringLiteral("a.jpg"));
    EXPECT_EQ(withExtension(QStringLiteral("a."), {"jpg"}), QStringLiteral("a.jpg"));
    EXPECT_EQ(withExtension(QStringLiteral("a.jpg"), {"jpg"}), QStringLiteral("a.jpg"));
    EXPECT_EQ(withExtension(QStringLiteral("a.JPG"), {"jpg"}), QStringLiteral("a.JPG"));
    EXPECT_EQ(withExtension(QStringLiteral("a.png"), {"jpg"}), QStringLiteral("a.png.jpg"));
    EXPECT_EQ(withExtension(QStringLiteral("day.2"), {"tiff"}), QStringLiteral("day.2.tiff"));
}

using test::accept;

/// A save panel for a JPEG file in a temporary folder.
class RunningSavePanel : public testing::Test {
protected:
    void show() { panel.show(); }

    void typeName(const char* text) {
        auto* name = panel.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_TRUE(name);
        test::activate(panel); // only with the focus, typing replaces the selection in the list
        name->setFocus();
        name->selectAll();
        QTest::keyClicks(name, QString::fromLatin1(text));
    }

    std::string chosenFile() { return panel.chosenPath(); }

    TemporaryFolder folder;
    FakeDialogs dialogs;
    std::filesystem::path source = folder.path() / "a.jpg";
    std::filesystem::path privateFolder = folder.path() / "history";
    SaveFilePanel panel{SavePanel{.allowedFileTypes = {"jpg"}, .nameFieldStringValue = "a_retouched.jpg"},
                        folder.path(),
                        {.source = source, .privateFolder = privateFolder},
                        dialogs};
};

TEST_F(RunningSavePanel, ProposesTheNameWithItsExtension) {
    panel.show();
    EXPECT_EQ(panel.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(),
              QStringLiteral("a_retouched.jpg"));
    accept(panel);
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    EXPECT_EQ(chosenFile(), folder.path() / "a_retouched.jpg");
}

TEST_F(RunningSavePanel, ReturnsTheNameWithTheExtensionAppended) {
    panel.show();
    typeName("b.png");
    accept(panel);
    EXPECT_EQ(chosenFile(), folder.path() / "b.png.jpg");
}

TEST_F(RunningSavePanel, AsksAboutTheCompletedName) {
    writeFile(folder.path() / "b.jpg", "old");
    panel.show();
    typeName("b");
    dialogs.expectQuestion("“b.jpg” already exists. Do you want to replace it?", kSecondButton);
    accept(panel);
    EXPECT_EQ(panel.result(), QDialog::Rejected);
    EXPECT_TRUE(panel.isVisible());
    dialogs.expectQuestion("“b.jpg” already exists. Do you want to replace it?", kFirstButton);
    accept(panel);
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    EXPECT_EQ(chosenFile(), folder.path() / "b.jpg");
}

TEST_F(RunningSavePanel, WarnsThatTheOpenedPhotoWouldBeReplaced) {
    writeFile(source, "the photo");
    panel.show();
    typeName("a");
    dialogs.expectQuestion(
        "“a.jpg” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?",
        kSecondButton);
    accept(panel);
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(RunningSavePanel, RecognisesTheOpenedPhotoThroughLinks) {
    writeFile(source, "the photo");
    std::filesystem::create_symlink(source, folder.path() / "link.jpg");
    std::filesystem::create_hard_link(source, folder.path() / "same.jpg");
    panel.show();
    for (const std::string name : {"link", "same"}) {
        typeName(name.c_str());
        dialogs.expectQuestion("“" + name +
                                   ".jpg” is the photo that you opened. Saving here replaces it for good. Do "
                                   "you want to replace it?",
                               kSecondButton);
        accept(panel);
        EXPECT_TRUE(panel.isVisible());
    }
}

TEST_F(RunningSavePanel, RefusesThePrivateFolder) {
    std::filesystem::create_directory(privateFolder);
    writeFile(privateFolder / "stateImage1.jpg", "a state");
    std::filesystem::create_directory_symlink(privateFolder, folder.path() / "link");
    panel.show();
    for (const std::string name : {"history/stateImage1.jpg", "history/new", "link/new.jpg"}) {
        typeName((folder.path() / name).c_str());
        dialogs.expectAlert("This folder is emptied when Complexion ends. Please choose another one.",
                            AlertStyle::Warning);
        accept(panel);
        EXPECT_TRUE(panel.isVisible()) << name;
    }
    typeName((folder.path() / "new").c_str());
    accept(panel);
    EXPECT_FALSE(panel.isVisible());
}

const std::vector<std::string>& hostileNames() {
    static const std::vector<std::string> names = {"\"holiday.jpg\"",
                                                   "a \"b\" c.jpg",
                                                   "\"b\"",
                                                   "\"",
                                                   "\"\" \"\"",
                                                   " both ends .jpg",
                                                   " .jpg",
                                                   "a;b.jpg",
                                                   "two\nlines.jpg",
                                                   "-rf.jpg",
                                                   "--",
                                                   "'single'.jpg",
                                                   "back\\slash.jpg",
                                                   "$HOME.jpg",
                                                   "~",
                                                   "*.jpg",
                                                   "a%20b.jpg",
                                                   "#1?.jpg",
                                                   "file:x.jpg",
                                                   "...",
                                                   "\u00e9\u5199.jpg",
                                                   std::string(251, 'n') + ".jpg"};
    return names;
}

TEST_F(RunningSavePanel, ReturnsExactlyTheCheckedPath) {
    writeFile(folder.path() / "b.jpg", "another photo");
    writeFile(folder.path() / "holiday.jpg", "another photo");
    for (const std::string& name : hostileNames()) {
        const QString completed = withExtension(QString::fromStdString(name), {"jpg"});
        const std::filesystem::path file = folder.path() / completed.toStdString();
        panel.show();
        panel.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(name));
        accept(panel);
        EXPECT_EQ(panel.result(), QDialog::Accepted) << name;
        EXPECT_EQ(chosenFile(), file) << name;
        writeFile(file, "exists now");
        panel.setResult(QDialog::Rejected);
        panel.show();
        panel.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(name));
        dialogs.expectQuestion(
            "“" + file.filename().string() + "” already exists. Do you want to replace it?", kFirstButton);
        accept(panel);
        EXPECT_EQ(chosenFile(), file) << name;
    }
}

TEST_F(RunningSavePanel, ProposesHostileNamesUnchanged) {
    for (const std::string& name : hostileNames()) {
        SaveFilePanel proposing({.allowedFileTypes = {"jpg"}, .nameFieldStringValue = name}, folder.path(),
                                {}, dialogs);
        proposing.show();
        accept(proposing);
        EXPECT_EQ(proposing.chosenPath(),
                  folder.path() / withExtension(QString::fromStdString(name), {"jpg"}).toStdString());
    }
}

TEST_F(RunningSavePanel, AnOpenPanelAcceptsHostileNames) {
    for (const std::string& name : hostileNames()) {
        const std::filesystem::path file = folder.path() / name;
        writeFile(file, "a photo");
        OpenFilePanel opening({.allowedFileTypes = {"jpg"}}, folder.path(), dialogs);
        opening.show();
        opening.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(name));
        for (const QPushButton* button : opening.findChildren<QPushButton*>())
            EXPECT_TRUE(button->isEnabled()) << name;
        accept(opening);
        EXPECT_EQ(opening.result(), QDialog::Accepted) << name;
        EXPECT_EQ(opening.chosenPath(), file) << name;
    }
}

TEST_F(RunningSavePanel, NoPanelCreatesRenamesOrDeletes) {
    EXPECT_FALSE(OpenPanel().canCreateDirectories);
    writeFile(folder.path() / "a.jpg", "a photo");
    SaveFilePanel saving({.allowedFileTypes = {"jpg"}, .nameFieldStringValue = "a_retouched.jpg"},
                         folder.path(), {.source = source, .privateFolder = privateFolder}, dialogs);
    OpenFilePanel opening({.allowedFileTypes = {"jpg"}}, folder.path(), dialogs);
    for (FilePanel* shown : {static_cast<FilePanel*>(&saving), static_cast<FilePanel*>(&opening)}) {
        shown->show();
        test::waitUntilListed(*shown);
        QTreeView* const list = &test::listOf(*shown);
        ASSERT_EQ(list->model()->rowCount(), 1);
        EXPECT_EQ(list->editTriggers(), QAbstractItemView::NoEditTriggers);
        test::activate(*shown);
        list->setFocus();
        list->setCurrentIndex(list->model()->index(0, 0));
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_F2})
            QTest::keyClick(list, key);
        QTest::keyClick(list, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        QStringList buttons;
        for (const QAbstractButton* button : shown->findChildren<QAbstractButton*>())
            if (button->isVisibleTo(shown))
                buttons += button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
        EXPECT_EQ(buttons.size(), 3) << buttons.join(QStringLiteral(", ")).toStdString();
    }
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"a.jpg"});
}

TEST_F(RunningSavePanel, StaysOpenForTheNameOfAFolder) {
    std::filesystem::create_directory(folder.path() / "inner");
    panel.show();
    typeName("inner");
    accept(panel);
    EXPECT_TRUE(panel.isVisible());
}

TEST(OpenPanelOfANewUser, StartsInTheHomeFolderWithoutAName) {
    const TemporaryFolder home;
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", home.path().c_str());
    WindowDialogs dialogs(nullptr, [] { return std::filesystem::path(); });
    std::filesystem::path folder;
    QString name = QStringLiteral("not read");
    QTimer::singleShot(0, [&] {
        auto* const panel = qobject_cast<FilePanel*>(QApplication::activeModalWidget());
        ASSERT_TRUE(panel);
        EXPECT_TRUE(QTest::qWaitFor([&] { return panel->folder() == home.path(); }));
        folder = panel->folder();
        name = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        panel->reject();
    });
    dialogs.runOpenPanel({.allowedFileTypes = {"png"}});
    qputenv("HOME", before);
    EXPECT_EQ(folder, home.path());
    EXPECT_EQ(name, QString());
}

} // namespace
} // namespace complexion
