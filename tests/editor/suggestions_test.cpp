// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/suggestions.h"

#include "tests/editor/aim_fixture.h"
#include "tests/editor/spotted_face.h"

namespace complexion {
namespace {

class SuggestionsTest : public AimFixture {
protected:
    void open(const Image& image) {
        openThroughPanel(makePhoto("face.png", image));
        controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    }
    void goTo(int step) {
        aim->goToSuggestion(step);
        queues.runAll();
    }
    void expectAt(PixelPosition place) const {
        ASSERT_TRUE(aim->place().has_value());
        EXPECT_NEAR(static_cast<double>(place.row), static_cast<double>(aim->place()->row), 2);
        EXPECT_NEAR(static_cast<double>(place.column), static_cast<double>(aim->place()->column), 2);
    }
};

TEST_F(SuggestionsTest, TheRingMovesToTheNextAndPreviousOneAndWrapsAround) {
    open(face());
    for (const PixelPosition place : {kFirst, kSecond, kThird, kFirst}) {
        goTo(1);
        expectAt(place);
    }
    goTo(-1);
    expectAt(kThird);
    goTo(-1);
    expectAt(kSecond);
}

TEST_F(SuggestionsTest, EachIsAnnouncedAndTheEditAreaFitsIt) {
    open(face());
    goTo(1);
    const std::int64_t radius = controller->currentRepair().radius;
    EXPECT_GE(radius, 6);
    EXPECT_LE(radius, 12);
    EXPECT_TRUE(announcements.contains(QStringLiteral("Suggestion 1 of 3: dark spot, %1 pixels").arg(radius)))
        << announcements.join(u'\n').toStdString();
}

TEST_F(SuggestionsTest, ThePreviousOneOfNoneIsTheLast) {
    open(face());
    goTo(-1);
    expectAt(kThird);
}

TEST_F(SuggestionsTest, ThePreviousOneOfARepairedOneIsTheOneBeforeIt) {
    open(face());
    goTo(1);
    goTo(1);
    expectAt(kSecond);
    controller->BeginRetouch(centreOf(kSecond, controller->originalImage().size()));
    queues.runAll();
    goTo(-1);
    expectAt(kFirst);
}

TEST_F(SuggestionsTest, AreNotVisitedWhileAColorIsPicked) {
    open(face());
    aim->setPicking(true);
    goTo(1);
    EXPECT_FALSE(aim->place().has_value());
    EXPECT_TRUE(announcements.isEmpty());
    aim->setPicking(false);
    aim->goToSuggestion(1);
    aim->setPicking(true); // before the search has ended
    queues.runAll();
    EXPECT_FALSE(aim->place().has_value());
    EXPECT_TRUE(announcements.isEmpty());
}

TEST_F(SuggestionsTest, AreAnnouncedEvenIfTheDiscIsGone) {
    open(filled({300, 300}, kSkin));
    delete disc;
    goTo(1);
    EXPECT_EQ(QStringLiteral("No blemishes found."), announcements.last());
}

TEST_F(SuggestionsTest, ARepairedOneIsRemovedAndTheRingMovesToTheNext) {
    open(face());
    goTo(1);
    aim->act();
    queues.runAll();
    expectAt(kSecond);
    EXPECT_TRUE(announcements.last().startsWith(QStringLiteral("Suggestion 1 of 2")))
        << announcements.last().toStdString();
    aim->act();
    queues.runAll();
    aim->act();
    queues.runAll();
    EXPECT_EQ(QStringLiteral("No blemishes found."), announcements.last());
    EXPECT_EQ(3, controller->currenState);
}

TEST_F(SuggestionsTest, TheRingStaysAfterARepairElsewhere) {
    open(face());
    goTo(1);
    aim->moveBy(static_cast<int>(kThird.column - aim->place()->column),
                static_cast<int>(kThird.row - aim->place()->row));
    aim->act();
    queues.runAll();
    expectAt(kThird);
}

TEST_F(SuggestionsTest, TheLackOfBlemishesIsAnnounced) {
    goTo(1);
    EXPECT_TRUE(announcements.isEmpty()) << "no photo";
    open(filled({300, 300}, kSkin));
    goTo(1);
    EXPECT_EQ(QStringLiteral("No blemishes found."), announcements.last());
}

TEST_F(SuggestionsTest, AreReportedOnlyForTheLatestImage) {
    Suggestions suggestions(queues);
    int found = 0;
    QObject::connect(&suggestions, &Suggestions::found, &suggestions, [&found] { ++found; });
    const Image first = face();
    const Image second = filled({300, 300}, kSkin);
    suggestions.search(first);
    suggestions.search(second);
    EXPECT_EQ(nullptr, suggestions.on(second));
    queues.runAll();
    EXPECT_EQ(1, found);
    EXPECT_EQ(nullptr, suggestions.on(first));
    ASSERT_NE(nullptr, suggestions.on(second));
    EXPECT_TRUE(suggestions.on(second)->empty());
    suggestions.search(second);
    EXPECT_EQ(0U, queues.backgroundCount());
}

TEST_F(SuggestionsTest, CanBeDestroyedDuringASearch) {
    auto suggestions = std::make_unique<Suggestions>(queues);
    suggestions->search(face());
    suggestions.reset();
    queues.runAll();
}

} // namespace
} // namespace complexion
