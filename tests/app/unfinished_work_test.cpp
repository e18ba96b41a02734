// SPDX-License-Identifier: GPL-3.0-or-later

// The card that offers to resume unfinished work.
#include "app/unfinished_work.h"
#include "tests/app/window_fixture.h"
#include "tests/fakes/temporary_folder.h"

#include <QAbstractButton>
#include <QTest>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* kForgetQuestion =
    "The repairs of this photo will be lost. Are you sure you want to forget them?";

class StartCard : public WindowTest {
protected:
    /// Leaves a journal with `repairs` repairs of a photo of that name, as a killed process does.
    void abandonWork(const std::string& name, int repairs) {
        const std::filesystem::path path = platform.photos() / name;
        ASSERT_TRUE(ImageTools::SaveImage(skinWithBlemishes({200, 140}, {{70, 100}}), path, "png"));
        Journal journal(folder);
        journal.begin(path, *identify(path));
        for (int i = 0; i < repairs; ++i)
            journal.append(RepairStep{.place = {100.5, 69.5},
                                      .stroke = {},
                                      .repair = {.radius = 10,
                                                 .colorType = 1,
                                                 .customColor = {},
                                                 .style = RepairStyle::FlatColor,
                                                 .threshold = 10},
                                      .changesBack = 0,
                                      .stateMilliseconds = 1000 + i});
    }

    void start() {
        work.emplace(folder, card(), *controller, dialogs);
        QCoreApplication::processEvents();
    }

    ContinueCard& card() { return *window.contents().boxContinue; }

    /// The accessible names of the card's buttons, in order.
    QStringList names() {
        QStringList names;
        for (const QAbstractButton* button : card().findChildren<QAbstractButton*>())
            if (!button->isHidden())
                names.append(button->accessibleName());
        return names;
    }

    void press(const QString& name) {
        for (QAbstractButton* button : card().findChildren<QAbstractButton*>())
            if (!button->isHidden() && button->accessibleName() == name) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        FAIL() << "no button " << name.toStdString();
    }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "complexion";
    std::optional<UnfinishedWork> work;
};

TEST_F(StartCard, IsHiddenWithoutWork) {
    start();
    EXPECT_TRUE(card().isHidden());
}

TEST_F(StartCard, NamesThePhotoAndItsRepairs) {
    abandonWork("face.png", 37);
    start();
    EXPECT_TRUE(card().isVisible());
    EXPECT_EQ(names(),
              (QStringList{u"Continue where you left off: face.png, 37 repairs"_s, u"Forget face.png"_s}));
}

TEST_F(StartCard, ResumesByKeyboard) {
    abandonWork("face.png", 1);
    start();
    QAbstractButton* const button = card().findChildren<QAbstractButton*>().at(0);
    EXPECT_EQ(button->accessibleName(), u"Continue where you left off: face.png, 1 repair"_s);
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_TRUE(controller->hasImage());
    EXPECT_EQ(controller->currenState, 1);
    EXPECT_EQ(controller->originalImage().pixel(70, 100), kSkin);
    EXPECT_TRUE(card().isHidden());
    EXPECT_TRUE(controller->canUndo());
    // The window continues the same journal, and deletes it on closing.
    EXPECT_EQ(filesIn(folder).size(), 1U);
    controller->windowWillClose();
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(StartCard, ForgetsOnlyAfterYes) {
    abandonWork("face.png", 2);
    start();
    dialogs.expectQuestion(kForgetQuestion, kSecondButton);
    press(u"Forget face.png"_s);
    EXPECT_EQ(filesIn(folder).size(), 1U);
    EXPECT_TRUE(card().isVisible());
    dialogs.expectQuestion(kForgetQuestion, kFirstButton);
    press(u"Forget face.png"_s);
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_TRUE(card().isHidden());
}

TEST_F(StartCard, KeepsWorkWhosePhotoIsMissing) {
    abandonWork("face.png", 2);
    std::filesystem::remove(platform.photos() / "face.png");
    start();
    dialogs.expectAlert("The photo has been moved or deleted. Its repairs are kept until you forget them.",
                        AlertStyle::Warning);
    press(u"Continue where you left off: face.png, 2 repairs"_s);
    EXPECT_FALSE(controller->hasImage());
    EXPECT_TRUE(card().isVisible());
    EXPECT_EQ(filesIn(folder).size(), 1U);
}

TEST_F(StartCard, ShowsTheNextWorkWhenOneIsForgotten) {
    for (int i = 0; i < ContinueCard::kMaxRows + 1; ++i)
        abandonWork("face" + std::to_string(i) + ".png", i + 2);
    start();
    EXPECT_EQ(names().size(), 2 * ContinueCard::kMaxRows);
    dialogs.expectQuestion(kForgetQuestion, kFirstButton);
    press(names().at(1));
    EXPECT_EQ(names().size(), 2 * ContinueCard::kMaxRows);
    EXPECT_EQ(filesIn(folder).size(), static_cast<std::size_t>(ContinueCard::kMaxRows));
}

TEST_F(StartCard, ReleasesTheWorkWhenAnotherPhotoIsOpened) {
    abandonWork("abandoned.png", 2);
    start();
    EXPECT_TRUE(AbandonedJournal::findIn(folder).empty());
    open();
    EXPECT_TRUE(card().isHidden());
    EXPECT_EQ(AbandonedJournal::findIn(folder).size(), 1U);
}

TEST_F(StartCard, CoversNoOtherBox) {
    for (int i = 0; i < ContinueCard::kMaxRows; ++i)
        abandonWork("a face with a rather long name " + std::to_string(i) + ".png", 1000);
    start();
    window.resize(window.minimumSize());
    QCoreApplication::processEvents();
    std::vector<const QWidget*> boxes = {&card(), window.contents().boxHint, window.contents().boxHelp,
                                         window.contents().boxEditSettings};
    std::erase_if(boxes, [](const QWidget* box) { return box->isHidden(); });
    EXPECT_GE(boxes.size(), 3U); // the help gives way in a small window
    for (const QWidget* one : boxes) {
        EXPECT_TRUE(window.rootView().rect().contains(one->geometry())) << one->objectName().toStdString();
        for (const QWidget* other : boxes)
            if (one != other) {
                EXPECT_FALSE(one->geometry().intersects(other->geometry()))
                    << one->objectName().toStdString() << " and " << other->objectName().toStdString();
            }
    }
}

} // namespace

} // namespace complexion
