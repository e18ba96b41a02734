// SPDX-License-Identifier: GPL-3.0-or-later

// Compares the flat repair's two lists and its colours with a straightforward implementation of the rule, for
// random small pictures of any size in points and discs at any place. In small discs, a difference of one
// unit in a sum shows.
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"
#include "tests/imaging/plain_repair.h"

#include <gtest/gtest.h>

#include <random>

namespace complexion {
namespace {

/// The grey values, packed, addressed in rows of the picture's width in points. Coordinates are clamped.
class PlainMap {
public:
    explicit PlainMap(const Image& image)
        : m_rows(image.pixelSize().height), m_width(static_cast<int>(image.size().width)) {
        for (const RGBA32 pixel : pixelsOf(image))
            m_greys.push_back(plainGrey(pixel));
    }

    int at(std::int64_t row, std::int64_t column) const {
        const std::int64_t inRow = std::min<std::int64_t>(std::max<std::int64_t>(row, 0), m_rows - 1);
        std::int64_t inColumn = column;
        if (inColumn >= m_width)
            inColumn = m_width - 1;
        if (inColumn < 0)
            inColumn = 0;
        const std::int64_t index =
            std::min<std::int64_t>(inRow * m_width + inColumn, std::ssize(m_greys) - 1);
        return m_greys[static_cast<std::size_t>(index)];
    }

private:
    std::vector<int> m_greys;
    std::int64_t m_rows;
    std::int64_t m_width;
};

/// The oracle for FindPimplePixels: a loop over the square around the disc.
PimplePixels expectedLists(const Image& image, std::int64_t row, std::int64_t column, std::int64_t radius,
                           std::int64_t threshold) {
    const PlainMap map(image);
    std::vector<PixelPosition> disc;
    std::int64_t sum = 0;
    for (std::int64_t r = row - radius; r < row + radius; ++r)
        for (std::int64_t c = column - radius; c < column + radius; ++c)
            if ((c - column) * (c - column) + (r - row) * (r - row) < radius * radius) {
                disc.push_back({r, c});
                sum += map.at(r, c);
            }
    const std::int64_t mean = sum / std::ssize(disc);
    std::int64_t d = 0;
    while ((d + 1) * (d + 1) <= radius * radius / 2)
        ++d;
    const int top = map.at(row - radius, column);
    const int topRight = map.at(row - d, column + d);
    const int right = map.at(row, column + radius);
    const int bottomRight = map.at(row + d, column + d);
    const int bottom = map.at(row + radius, column);
    const int bottomLeft = map.at(row + d, column - d);
    const int left = map.at(row, column - radius);
    const int topLeft = map.at(row - d, column - d);
    if (std::abs(top - bottom) > 70 || std::abs(topRight - bottomLeft) > 70 || std::abs(right - left) > 70 ||
        std::abs(bottomRight - topLeft) > 70)
        return {};
    int core = 0;
    for (const int r : {-1, 0, 1})
        for (const int c : {-1, 0, 1})
            core += map.at(row + r, column + c);
    const int rim = top + topRight + right + bottomRight + bottom + bottomLeft + left + topLeft;
    const bool isDark = rim / 8 > core / 9;
    PimplePixels pixels;
    for (const PixelPosition place : disc) {
        const int level = map.at(place.row, place.column);
        const bool isBlemish = isDark ? level < mean - threshold : level > mean + threshold;
        (isBlemish ? pixels.repair : pixels.sample).push_back(place);
    }
    return pixels;
}

class RepairLists : public testing::Test {
protected:
    int from(int first, int last) {
        return first + static_cast<int>(m_random() % static_cast<unsigned>(last - first + 1));
    }

    /// Random colours around a grey, sometimes with rows and columns that differ more.
    Image picture(PixelSize size) {
        const int base = from(40, 160);
        const int grain = from(0, 40);
        const int odd = from(0, 60);
        return painted(size, [&](int row, int column) {
            const int level = base + (row % 5 == 2 || column % 7 == 3 ? odd : 0);
            return RGBA32(static_cast<std::uint8_t>(level + from(0, grain)),
                          static_cast<std::uint8_t>(level + from(0, grain)),
                          static_cast<std::uint8_t>(level + from(0, grain)), 255);
        });
    }

    std::mt19937 m_random{11};
};

TEST_F(RepairLists, EqualTheOracles) {
    int repaired = 0;
    for (int round = 0; round < 4000; ++round) {
        const PixelSize size{from(1, 24), from(1, 24)};
        Image image = picture(size);
        // Sometimes the size in points differs from the size in pixels, and so does the length of rows.
        if (from(0, 2) == 0)
            image = image.withSize({from(1, 30) + from(0, 3) / 4.0, from(1, 30) + from(0, 3) / 4.0});
        const std::int64_t radius = from(1, 6);
        const std::int64_t row = from(-3, 27);
        const std::int64_t column = from(-3, 27);
        const std::int64_t threshold = from(-2, 15);
        const Point point{static_cast<double>(column), image.size().height - static_cast<double>(row)};
        SCOPED_TRACE(testing::Message() << "round " << round << ", radius " << radius << ", row " << row
                                        << ", column " << column);
        const PimplePixels expected = expectedLists(image, row, column, radius, threshold);
        const PimplePixels pixels = ImageTools::FindPimplePixels(point, image, radius, threshold);
        ASSERT_EQ(pixels.repair, expected.repair);
        ASSERT_EQ(pixels.sample, expected.sample);
        repaired += expected.repair.empty() ? 0 : 1;
    }
    EXPECT_GT(repaired, 1000);
}

TEST_F(RepairLists, TheSamplesMeanColorIsPaintedOnTheRepairedPixels) {
    int repaired = 0;
    for (int round = 0; round < 2000; ++round) {
        const PixelSize size{from(14, 24), from(14, 24)};
        const Image image = picture(size);
        const std::int64_t radius = from(1, 6);
        const std::int64_t row = from(static_cast<int>(radius), size.height - static_cast<int>(radius));
        const std::int64_t column = from(static_cast<int>(radius), size.width - static_cast<int>(radius));
        const std::int64_t threshold = from(0, 9);
        const PimplePixels lists = expectedLists(image, row, column, radius, threshold);
        std::vector<RGBA32> expected = pixelsOf(image);
        const auto at = [&](PixelPosition place) -> RGBA32& {
            return expected[static_cast<std::size_t>(place.row * size.width + place.column)];
        };
        std::array<std::uint64_t, 3> sums = {};
        for (const PixelPosition place : lists.sample) {
            sums[0] += at(place).red();
            sums[1] += at(place).green();
            sums[2] += at(place).blue();
        }
        for (const PixelPosition place : lists.repair)
            at(place) = RGBA32(static_cast<std::uint8_t>(sums[0] / lists.sample.size()),
                               static_cast<std::uint8_t>(sums[1] / lists.sample.size()),
                               static_cast<std::uint8_t>(sums[2] / lists.sample.size()), 255);
        const Point point{static_cast<double>(column), static_cast<double>(size.height - row)};
        const auto result = ImageTools::RemovePimpleFromImage(image, point, radius, 1, {}, threshold);
        ASSERT_EQ(pixelsOf(*result), expected) << "round " << round;
        repaired += lists.repair.empty() ? 0 : 1;
    }
    EXPECT_GT(repaired, 500);
}

} // namespace
} // namespace complexion
