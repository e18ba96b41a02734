// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/orientation.h"

#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

const std::vector<Orientation> kAll = {
    Orientation::TopLeft, Orientation::TopRight, Orientation::BottomRight, Orientation::BottomLeft,
    Orientation::LeftTop, Orientation::RightTop, Orientation::RightBottom, Orientation::LeftBottom};

// The letter F as a camera stores it for each orientation: upright it reads
//   1 2
//   3 0
//   4 0
constexpr int kUpright[3][2] = {{1, 2}, {3, 0}, {4, 0}};

Image stored(Orientation orientation) {
    const auto upright = [](int row, int column) { return grey(kUpright[row][column]); };
    switch (orientation) {
    case Orientation::TopLeft:
        return painted({2, 3}, [&](int r, int c) { return upright(r, c); });
    case Orientation::TopRight: // column 0 is the right side
        return painted({2, 3}, [&](int r, int c) { return upright(r, 1 - c); });
    case Orientation::BottomRight:
        return painted({2, 3}, [&](int r, int c) { return upright(2 - r, 1 - c); });
    case Orientation::BottomLeft:
        return painted({2, 3}, [&](int r, int c) { return upright(2 - r, c); });
    case Orientation::LeftTop: // row 0 is the left side, column 0 the top
        return painted({3, 2}, [&](int r, int c) { return upright(c, r); });
    case Orientation::RightTop: // row 0 is the right side, column 0 the top
        return painted({3, 2}, [&](int r, int c) { return upright(c, 1 - r); });
    case Orientation::RightBottom:
        return painted({3, 2}, [&](int r, int c) { return upright(2 - c, 1 - r); });
    case Orientation::LeftBottom:
        return painted({3, 2}, [&](int r, int c) { return upright(2 - c, r); });
    }
    return {};
}

TEST(Orientation, PicturesOfEveryOrientationAreTurnedUpright) {
    const Image upright = painted({2, 3}, [](int r, int c) { return grey(kUpright[r][c]); });
    for (const Orientation orientation : kAll)
        EXPECT_EQ(pixelsOf(turnedUpright(stored(orientation), orientation)), pixelsOf(upright))
            << static_cast<int>(orientation);
}

TEST(Orientation, TurningForStorageInvertsTurningUpright) {
    for (const PixelSize size : {PixelSize{1, 1}, {300, 70}, {65, 257}, {64, 256}})
        for (const Orientation orientation : kAll) {
            const Image image = noise(size);
            const Image upright = turnedUpright(image, orientation);
            EXPECT_EQ(upright.pixelSize(), uprightSize(size, orientation));
            EXPECT_EQ(pixelsOf(turnedForStorage(upright, orientation)), pixelsOf(image))
                << static_cast<int>(orientation);
        }
}

TEST(Orientation, TheSizeInPointsIsTurned) {
    const Image image = noise({40, 20}).withSize({20, 5});
    EXPECT_EQ(turnedUpright(image, Orientation::RightTop).size(), (PointSize{5, 20}));
    EXPECT_EQ(turnedUpright(image, Orientation::BottomRight).size(), (PointSize{20, 5}));
}

TEST(Orientation, AnUprightPictureIsTheSameObject) {
    const Image image = noise({40, 20});
    EXPECT_TRUE(turnedUpright(image, Orientation::TopLeft).isSameObject(image));
}

TEST(Orientation, InvalidValuesAreUpright) {
    for (const int value : {-1, 0, 9, 274})
        EXPECT_EQ(orientationFromTag(value), Orientation::TopLeft);
}

} // namespace
} // namespace complexion
