// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/suggestion_marks.h"

#include "tests/editor/aim_fixture.h"
#include "tests/editor/spotted_face.h"

namespace complexion {
namespace {

class SuggestionMarksTest : public AimTest {
protected:
    void SetUp() override {
        AimTest::SetUp();
        marks = new BlemishMarks(imageView);
        shown = std::make_unique<SuggestionMarks>(*controller, *suggested, marks);
        QObject::connect(shown.get(), &SuggestionMarks::announced, shown.get(),
                         [this](const QString& text) { announcements << text; });
    }

    void open(const Image& image) {
        openThroughPanel(makePhoto("face.png", image));
        controller->comboRepair->setCurrentIndex(static_cast<int>(RepairStyle::Natural));
    }
    void showMarks() {
        shown->setShown(true);
        queues.runAll();
    }
    void expectMarksNear(const std::vector<PixelPosition>& places) const {
        ASSERT_EQ(marks->marked().size(), places.size());
        for (std::size_t i = 0; i < places.size(); ++i) {
            const PixelPosition marked = marks->marked()[i].place;
            EXPECT_NEAR(static_cast<double>(marked.row), static_cast<double>(places[i].row), 2) << i;
            EXPECT_NEAR(static_cast<double>(marked.column), static_cast<double>(places[i].column), 2) << i;
        }
    }
    void repairAt(PixelPosition place) {
        controller->SetEditAreaSize(10);
        controller->BeginRetouch(centreOf(place, controller->originalImage().size()));
        queues.runAll();
    }

    BlemishMarks* marks = nullptr; // owned by the view
    std::unique_ptr<SuggestionMarks> shown;
};

TEST_F(SuggestionMarksTest, AreOffAtFirst) {
    open(face());
    restUntil([this] { return queues.backgroundCount() > 0; });
    queues.runAll();
    expectMarksNear({});
    EXPECT_TRUE(marks->isHidden());
}

TEST_F(SuggestionMarksTest, ThePhotoIsSearchedOnceTheUserPauses) {
    open(face());
    queues.runAll();
    EXPECT_EQ(suggested->on(controller->originalImage()), nullptr);
    restUntil([this] { return queues.backgroundCount() > 0; });
    queues.runAll();
    ASSERT_NE(suggested->on(controller->originalImage()), nullptr);
    shown->setShown(true);
    expectMarksNear({kFirst, kSecond, kThird});
}

TEST_F(SuggestionMarksTest, AreShownStrongestFirstAndCounted) {
    open(face());
    showMarks();
    expectMarksNear({kFirst, kSecond, kThird});
    EXPECT_EQ(announcements.last(), QStringLiteral("Blemishes marked: 3."));
    EXPECT_FALSE(marks->isHidden());
    shown->setShown(false);
    expectMarksNear({});
    EXPECT_TRUE(marks->isHidden());
}

TEST_F(SuggestionMarksTest, TheLackOfBlemishesIsAnnounced) {
    open(filled({300, 300}, kSkin));
    showMarks();
    EXPECT_EQ(announcements.last(), QStringLiteral("No blemishes found."));
}

TEST_F(SuggestionMarksTest, AMarkDisappearsWithItsBlemishAndReturnsWithUndo) {
    open(face());
    showMarks();
    repairAt(kSecond);
    expectMarksNear({kFirst, kThird});
    restUntil([this] { return queues.backgroundCount() > 0; });
    queues.runAll();
    expectMarksNear({kFirst, kThird});
    controller->OnUndo(nullptr);
    restUntil([this] { return queues.backgroundCount() > 0; });
    queues.runAll();
    expectMarksNear({kFirst, kSecond, kThird});
}

TEST_F(SuggestionMarksTest, AreHiddenWhileTheOriginalIsShown) {
    open(face());
    showMarks();
    controller->ShowSource(true);
    expectMarksNear({});
    controller->ShowSource(false);
    expectMarksNear({kFirst, kSecond, kThird});
}

TEST_F(SuggestionMarksTest, OfTheLastPhotoAreNotShownOnTheNext) {
    open(face());
    showMarks();
    open(filled({300, 300}, kSkin));
    expectMarksNear({});
}

TEST_F(SuggestionMarksTest, WithoutAPhotoNothingIsSearchedOrAnnounced) {
    shown->setShown(true);
    EXPECT_EQ(queues.backgroundCount(), 0U);
    EXPECT_TRUE(announcements.isEmpty());
    expectMarksNear({});
    open(face());
    restUntil([this] { return queues.backgroundCount() > 0; });
    queues.runAll();
    expectMarksNear({kFirst, kSecond, kThird});
    EXPECT_EQ(announcements.count(QStringLiteral("Blemishes marked: 3.")), 1);
}

// The view's overlays are destroyed before the objects that control them.
TEST_F(SuggestionMarksTest, NothingIsAnnouncedOnceTheViewIsGone) {
    open(face());
    delete marks;
    shown->setShown(true);
    queues.runAll();
    EXPECT_NE(suggested->on(controller->originalImage()), nullptr);
    repairAt(kSecond);
    EXPECT_FALSE(announcements.contains(QStringLiteral("Blemishes marked: 3.")));
}

TEST_F(SuggestionMarksTest, OnlyThoseInTheRepairedAreaDisappear) {
    open(face());
    showMarks();
    repairAt(kFirst); // the others are to the right of it and below
    expectMarksNear({kSecond, kThird});
}

TEST_F(SuggestionMarksTest, CanBeLimitedToTheStrongest) {
    constexpr int kColumns = 4;
    constexpr int kRows = 3;
    open(painted({900, 700}, [](int row, int column) {
        double t = 0;
        for (int i = 0; i < kRows * kColumns; ++i)
            t += 0.5 * stainAt(row, column, {120 + i / kColumns * 220, 120 + i % kColumns * 210}, 5);
        const double light = 1 - 0.0001 * column + 0.02 * grainAt(row, column);
        return RGBA32(byteOf(215 * light * (1 - 0.8 * t)), byteOf(170 * light * (1 - t)),
                      byteOf(150 * light * (1 - t)), 255);
    }));
    showMarks();
    const std::size_t all = marks->marked().size();
    ASSERT_GT(all, SuggestionMarks::kStrongest);
    shown->setOnlyStrongest(true);
    EXPECT_EQ(marks->marked().size(), SuggestionMarks::kStrongest);
    shown->setOnlyStrongest(false);
    EXPECT_EQ(marks->marked().size(), all);
}

TEST_F(SuggestionMarksTest, ArePaintedAroundTheBlemishesAndFollowTheZoom) {
    open(face());
    showMarks();
    const auto hasRing = [this] {
        const QImage picture = marks->grab().toImage();
        const DiscRing& blemish = marks->marked().front();
        const QPointF centre = shownCentre(*imageView, blemish.place);
        int painted = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (std::hypot(x - centre.x(), y - centre.y()) < shownLength(*imageView, blemish.radius) + 6)
                    painted += qAlpha(picture.pixel(x, y)) > 0;
        return painted > 0;
    };
    EXPECT_TRUE(hasRing());
    controller->ZoomAbout({200, 150}, 1);
    EXPECT_TRUE(hasRing());
}

} // namespace
} // namespace complexion
