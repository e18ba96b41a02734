// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

#include <QApplication>
#include <QCloseEvent>
#include <QImage>

namespace complexion {

namespace {

class Window : public EditorTest {
protected:
    /// Closes the window as the window manager does. Returns whether it accepts.
    bool close() {
        QCloseEvent event;
        QCoreApplication::sendEvent(root.get(), &event);
        return event.isAccepted();
    }
};

class UnloadedWindow : public EditorTest {
protected:
    void SetUp() override {}
};

TEST_F(UnloadedWindow, TheRootViewIsDarkGrey) {
    controller->awakeFromNib();
    imageView->hide();
    const QImage picture = root->grab().toImage();
    EXPECT_EQ(picture.pixelColor(200, 150), QColor(38, 38, 38)); // 0.15
}

TEST_F(UnloadedWindow, LoadingInitialisesTheControls) {
    controller->boxHint->hide();
    controller->boxHelp->hide();
    imageView->setAcceptDrops(false);
    controller->comboEffect->addItem(QStringLiteral("from the layout"));

    controller->awakeFromNib();
    controller->viewDidLoad();

    ASSERT_EQ(boxes.size(), 11U);
    for (const Box* box : boxes)
        EXPECT_EQ(box->alpha(), 0.8);
    EXPECT_FALSE(controller->boxHint->isHidden());
    EXPECT_FALSE(controller->boxHelp->isHidden());
    EXPECT_TRUE(imageView->acceptDrops());
    EXPECT_EQ(controller->comboEffect->count(), 9);
    EXPECT_EQ(controller->comboEffect->currentText(), QStringLiteral("Normal"));
    EXPECT_EQ(controller->comboRepair->count(), 2);
    EXPECT_EQ(controller->comboRepair->currentText(), QStringLiteral("Flat color"));
    EXPECT_TRUE(controller->checkAutodetectColor->isChecked());
    EXPECT_FALSE(imageView->image().has_value());
    EXPECT_EQ(dialogs.shownCount(), 0);
}

TEST_F(UnloadedWindow, TheCheckBoxIsTitledInWhiteFutura) {
    controller->awakeFromNib();
    controller->viewDidLoad();
    const QCheckBox& box = *controller->checkAutodetectColor;
    EXPECT_EQ(box.text(), QStringLiteral("Autodetect Color"));
    ASSERT_FALSE(box.font().families().isEmpty());
    EXPECT_EQ(box.font().families().front(), QStringLiteral("Futura"));
    EXPECT_GT(box.font().families().size(), 1); // fallbacks, as it may not be installed
    EXPECT_EQ(box.palette().color(QPalette::Active, QPalette::WindowText), QColor(Qt::white));
    EXPECT_EQ(box.layoutDirection(), Qt::LeftToRight);
}

TEST_F(UnloadedWindow, LoadingWithoutAControlIsFatal) {
    const auto loadWithout = [this](QObject* control) {
        delete control;
        controller->viewDidLoad();
    };
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_DEATH(loadWithout(boxes[i]), "gone");
    }
    EXPECT_DEATH(loadWithout(controller->imageView), "gone");
    EXPECT_DEATH(loadWithout(controller->checkAutodetectColor), "gone");
    EXPECT_DEATH(loadWithout(controller->colorWellCustomColor), "gone");
    EXPECT_DEATH(loadWithout(controller->textFieldEditAreaSize), "gone");
    EXPECT_DEATH(loadWithout(controller->stepperEditAreaSize), "gone");
    EXPECT_DEATH(loadWithout(controller->sliderThreshold), "gone");
    EXPECT_DEATH(loadWithout(controller->comboRepair), "gone");
    EXPECT_DEATH(loadWithout(controller->comboEffect), "gone");
}

TEST_F(UnloadedWindow, DropsAreHandledOnceLoaded) {
    const std::filesystem::path path = makePhoto();
    EXPECT_TRUE(drop(path));
    EXPECT_FALSE(imageView->image().has_value());
    controller->awakeFromNib();
    controller->viewDidLoad();
    EXPECT_TRUE(drop(path));
    EXPECT_TRUE(imageView->image().has_value());
}

// Closing.

TEST_F(Window, ClosesWithoutAQuestionIfThereIsNoPhoto) {
    EXPECT_TRUE(controller->windowShouldClose());
    EXPECT_TRUE(close());
}

TEST_F(Window, AnsweringNoKeepsItOpenAndUnchanged) {
    openThroughPanel(makePhoto());
    retouch(0);
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kExitQuestion, kSecondButton);
        EXPECT_FALSE(controller->windowShouldClose());
        dialogs.expectQuestion(kExitQuestion, kSecondButton);
        EXPECT_FALSE(close());
    });
    EXPECT_EQ(platform.terminations, 0);
}

TEST_F(Window, AnEventFilterInstalledDuringTheQuestionCausesNoSecondQuestion) {
    openThroughPanel(makePhoto());
    const int before = dialogs.shownCount();
    QObject filter;
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    dialogs.whileItIsShown([&] { root->installEventFilter(&filter); });

    EXPECT_TRUE(close());

    EXPECT_EQ(dialogs.shownCount(), before + 1);
}

TEST_F(Window, AnsweringYesDeletesEveryStateFile) {
    openThroughPanel(makePhoto());
    retouch(0);
    retouch(1);
    const std::vector<std::filesystem::path> paths = controller->stateImagesPath;
    FolderWatch watch(platform.states());
    dialogs.expectQuestion(kExitQuestion, kFirstButton);

    EXPECT_TRUE(close());

    EXPECT_TRUE(stateFiles().empty());
    EXPECT_THAT(watch.events(),
                testing::ElementsAre("-" + paths[0].filename().string(), "-" + paths[1].filename().string(),
                                     "-" + paths[2].filename().string()));
    EXPECT_EQ(controller->stateImagesPath, paths);
}

TEST_F(Window, AnyAnswerExceptNoCloses) {
    openThroughPanel(makePhoto());
    dialogs.expectQuestion(kExitQuestion, 1002);
    EXPECT_TRUE(controller->windowShouldClose());
}

TEST_F(Window, TheQuestionItselfDeletesNothing) {
    openThroughPanel(makePhoto());
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_TRUE(controller->windowShouldClose());
    EXPECT_EQ(stateFiles().size(), 1U);
}

TEST_F(Window, AStateFileThatCannotBeDeletedIsReportedAndDoesNotStopTheClosing) {
    openThroughPanel(makePhoto());
    retouch(0);
    std::filesystem::remove(controller->stateImagesPath[0]);
    const std::string printed = printedBy([this] { controller->windowWillClose(); });
    EXPECT_THAT(printed, testing::MatchesRegex("Remove failed: [^\n]+\n"));
    EXPECT_TRUE(stateFiles().empty());
}

// Quitting.

TEST_F(Window, QuittingWithoutAPhotoAsksNothing) {
    controller->OnAppQuit(nullptr);
    EXPECT_EQ(platform.terminations, 1);
}

TEST_F(Window, QuittingWithAPhotoAndNoChangesNothing) {
    openThroughPanel(makePhoto());
    expectUnchangedBy([this] {
        dialogs.expectQuestion(kExitQuestion, kSecondButton);
        controller->OnAppQuit(nullptr);
    });
    EXPECT_EQ(platform.terminations, 0);
}

TEST_F(Window, QuittingWithAPhotoAndYesEndsTheApplication) {
    openThroughPanel(makePhoto());
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    controller->OnAppQuit(nullptr);
    EXPECT_EQ(platform.terminations, 1);
}

TEST_F(Window, TheTutorialIsOpenedInTheBrowser) {
    controller->tutorialAddress = "https://complexion.example/a%20film";
    controller->OnVideoTutorial(nullptr);
    EXPECT_EQ(platform.addresses, std::vector<std::string>{"https://complexion.example/a%20film"});
    EXPECT_EQ(dialogs.shownCount(), 0);
}

TEST_F(Window, AnInvalidTutorialAddressOpensNothing) {
    for (const char* address : {"", "no address", "https://exa mple.org/", "https://[1/"}) {
        SCOPED_TRACE(address);
        controller->tutorialAddress = address;
        controller->OnVideoTutorial(nullptr);
        EXPECT_TRUE(platform.addresses.empty());
    }
}

} // namespace

} // namespace complexion
