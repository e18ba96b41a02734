// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/sample_portrait_painter.h"

#include <gmock/gmock.h>

#include <cmath>

namespace complexion {

namespace {

/// The mean grey of the pixels between two distances from a position.
double greyAround(const QImage& image, double x, double y, double nearest, double farthest) {
    double sum = 0;
    int count = 0;
    const int reach = static_cast<int>(farthest) + 1;
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx) {
            const double distance = std::hypot(dx, dy);
            if (distance < nearest || distance > farthest)
                continue;
            sum += qGray(image.pixel(static_cast<int>(x) + dx, static_cast<int>(y) + dy));
            ++count;
        }
    return sum / count;
}

} // namespace

TEST(SamplePortrait, HasADozenBlemishesDarkAndLightOfSeveralSizes) {
    int dark = 0;
    int light = 0;
    double smallest = 100;
    double largest = 0;
    for (const Blemish& blemish : samplePortraitBlemishes()) {
        ++(blemish.isDark ? dark : light);
        smallest = std::min(smallest, blemish.radius);
        largest = std::max(largest, blemish.radius);
    }
    EXPECT_GE(dark + light, 12);
    EXPECT_GE(dark, 2);
    EXPECT_GE(light, 2);
    EXPECT_GE(largest, 2 * smallest);
}

// One test, because painting takes seconds and each test is a separate process.
TEST(SamplePortrait, IsDeterministicAndItsBlemishesContrastWithTheSkin) {
    const SamplePortrait portrait = paintSamplePortrait();
    EXPECT_EQ(paintSamplePortrait().image, portrait.image);
    EXPECT_EQ(portrait.blemishes.size(), samplePortraitBlemishes().size());
    for (const Blemish& blemish : portrait.blemishes) {
        const double spot = greyAround(portrait.image, blemish.x, blemish.y, 0, blemish.radius * 0.35);
        const double skin =
            greyAround(portrait.image, blemish.x, blemish.y, blemish.radius * 1.3, blemish.radius * 1.8);
        EXPECT_GE(blemish.isDark ? skin - spot : spot - skin, 20) << blemish.x << ", " << blemish.y;
    }
}

} // namespace complexion
