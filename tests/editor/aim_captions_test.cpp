// SPDX-License-Identifier: GPL-3.0-or-later

// What is said at the ring when it rests.
#include "tests/editor/aim_fixture.h"

namespace complexion {
namespace {

using AimCaptions = AimTest;

TEST_F(AimCaptions, TheCaptionSaysWhyAClickWouldDoNothing) {
    openThroughPanel(makePhoto("clean.png", filled({160, 120}, kSkin)));
    pointAtPixel({60, 80});
    EXPECT_EQ(disc->caption(), QString());
    restUntil([this] { return !disc->caption().isEmpty(); });
    EXPECT_EQ(disc->caption(), QStringLiteral("Nothing stands out from the skin"));
    pointAtPixel({60, 4});
    EXPECT_EQ(disc->caption(), QString());
    restUntil([this] { return !disc->caption().isEmpty(); });
    EXPECT_EQ(disc->caption(), QStringLiteral("Too close to the edge of the photo"));

    openThroughPanel(makePhoto("edge.png", painted({160, 120}, [](int, int column) {
                                   return column < 74 ? grey(60) : grey(60 + 71);
                               })));
    pointAtPixel({60, 80});
    restUntil([this] { return !disc->caption().isEmpty(); });
    EXPECT_EQ(disc->caption(), QStringLiteral("The skin differs too much on the left"));
}

TEST_F(AimCaptions, TheReasonIsShownBesideTheHintAtTheFittingSize) {
    const Image spot = skinWithBlemishes({160, 120}, {{60, 80}});
    openThroughPanel(makePhoto("spot.png", painted({160, 120}, [&](int row, int column) {
                                   return column < 62 ? grey(20) : spot.pixel(row, column);
                               })));
    controller->SetEditAreaSize(20);
    pointAtPixel({60, 80});
    restUntil([this] { return disc->caption().contains(u'·'); });
    EXPECT_EQ(disc->caption(), QStringLiteral("The skin differs too much on the left · F fits the ring"));
}

TEST_F(AimCaptions, ATinyRingAsksForZoomUntilItIsLarger) {
    openThroughPanel(makePhoto("large.png", filled({1600, 1200}, kSkin)));
    pointAtPixel({600, 800});
    ASSERT_TRUE(disc->isTiny());
    restUntil([this] { return !disc->caption().isEmpty(); });
    EXPECT_EQ(disc->caption(), QStringLiteral("Zoom in to aim"));
    controller->ZoomAbout({200, 150}, 20);
    ASSERT_FALSE(disc->isTiny());
    EXPECT_EQ(disc->caption(), QString());
    queues.runAll();
    restUntil([this] { return !disc->caption().isEmpty(); });
    EXPECT_EQ(disc->caption(), QStringLiteral("Nothing stands out from the skin"));
}

TEST_F(AimCaptions, ThatNoBlemishesWereFoundIsNotReplacedByThePlace) {
    openThroughPanel(makePhoto("clean.png", filled({160, 120}, kSkin)));
    aim->goToSuggestion(1);
    queues.runAll();
    EXPECT_EQ(announcements.last(), QStringLiteral("No blemishes found."));

    // The place is announced when the disc rests. Another Aim, which rests later, shows that it would be now.
    Aim later(*controller, *suggested, new EditDisc(imageView), queues);
    QStringList laterAnnouncements;
    QObject::connect(&later, &Aim::announced, &later,
                     [&](const QString& text) { laterAnnouncements << text; });
    later.moveBy(0, 0);
    queues.runAll();
    restUntil([&] { return !laterAnnouncements.empty(); });
    EXPECT_EQ(announcements.last(), QStringLiteral("No blemishes found."));
    EXPECT_EQ(disc->caption(), QStringLiteral("No blemishes found."));

    aim->moveBy(1, 0);
    queues.runAll();
    restUntil([this] { return announcements.last().startsWith(QStringLiteral("Column 82, row 61.")); });
}

} // namespace
} // namespace complexion
