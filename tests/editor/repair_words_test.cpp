// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_words.h"

#include <gtest/gtest.h>

#include <set>

namespace complexion {
namespace {

Result<Repaired> refused(RepairOutcome outcome, std::optional<DiscSide> side = std::nullopt) {
    return Repaired{.image = {}, .repainted = {}, .outcome = outcome, .side = side};
}

Result<Repaired> repairedPixels(std::uint8_t count) {
    return Repaired{.image = {},
                    .repainted = {.area = {0, 0, count, 1}, .bytes = std::vector<std::uint8_t>(count, 1)},
                    .outcome = RepairOutcome::Repaired};
}

TEST(RepairWords, EveryRefusalHasItsOwnReason) {
    std::set<QString> captions;
    for (const RepairOutcome outcome : {RepairOutcome::NothingToRepair, RepairOutcome::FillsDisc,
                                        RepairOutcome::NoSkin, RepairOutcome::TooCloseToBorder}) {
        const QString caption = captionFor(refused(outcome));
        captions.insert(caption);
        EXPECT_TRUE(caption[0].isUpper()) << caption.toStdString();
        EXPECT_EQ(describe(refused(outcome), true),
                  QStringLiteral("Not repaired: %1.").arg(caption[0].toLower() + caption.mid(1)));
    }
    EXPECT_EQ(captions.size(), 4U);
    EXPECT_EQ(captionFor(Error{"out of memory"}), QStringLiteral("Not enough memory"));
}

TEST(RepairWords, NameTheSideThatDiffers) {
    std::set<QString> captions;
    for (const RepairOutcome outcome : {RepairOutcome::NotUniform, RepairOutcome::ExtendsOutside})
        for (int side = 0; side < 8; ++side)
            captions.insert(captionFor(refused(outcome, static_cast<DiscSide>(side))));
    EXPECT_EQ(captions.size(), 16U);
    EXPECT_TRUE(captions.contains(QStringLiteral("The skin differs too much at the top left")));
    EXPECT_TRUE(captions.contains(QStringLiteral("Something larger reaches into the ring on the right")));
}

TEST(RepairWords, CountThePixelsOfARepair) {
    EXPECT_TRUE(captionFor(repairedPixels(1)).isEmpty());
    EXPECT_EQ(describe(repairedPixels(1), true), QStringLiteral("Repaired one pixel."));
    EXPECT_EQ(describe(repairedPixels(1), false), QStringLiteral("One pixel would be repaired."));
    EXPECT_EQ(describe(repairedPixels(3), true), QStringLiteral("Repaired 3 pixels."));
    EXPECT_EQ(describe(repairedPixels(3), false), QStringLiteral("3 pixels would be repaired."));
}

} // namespace
} // namespace complexion
