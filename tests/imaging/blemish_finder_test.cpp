// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/finding/blemish_finder.h"

#include "tests/imaging/natural_repair_skin.h"

namespace complexion {
namespace {

using Color = std::array<double, 3>;

/// A mark painted on a face: a round spot or, if `length` is set, a horizontal line.
struct Mark {
    PixelPosition middle;
    double radius = 5;
    Color factors{0.55, 0.5, 0.6};
    int length = 0;
};

constexpr Color kDark{0.55, 0.5, 0.6};
constexpr Color kReddish{1, 0.7, 0.75};
constexpr Color kLight{1.2, 1.25, 1.25};
constexpr Color kFair{215, 170, 150};
constexpr Color kDeep{110, 70, 52};

/// A face, an ellipse of grainy skin in front of a grey wall.
/// `shading` is the fraction of the light that is lost from the middle to the right.
Image face(const std::vector<Mark>& marks, const Color& color = kFair, double shading = 0.15) {
    return painted({700, 800}, [&](int row, int column) {
        const double dx = (column - 350) / 250.0;
        const double dy = (row - 380) / 330.0;
        const bool isSkin = dx * dx + dy * dy < 1;
        std::array<std::uint8_t, 3> bytes{};
        for (std::size_t c = 0; c < 3; ++c) {
            double value = isSkin ? color[c] * (1 - shading * dx + 0.02 * grainAt(row, column)) : 120;
            for (const Mark& mark : marks) {
                const auto along = std::clamp<std::int64_t>(column, mark.middle.column - mark.length,
                                                            mark.middle.column + mark.length);
                value *=
                    1 + stainAt(row, column, {mark.middle.row, along}, mark.radius) * (mark.factors[c] - 1);
            }
            bytes[c] = byteOf(value);
        }
        return RGBA32(bytes[0], bytes[1], bytes[2], 255);
    });
}

std::vector<SuggestedBlemish> suggestedOn(const Image& image) {
    return BlemishFinder(image).suggestions();
}

bool isAt(const SuggestedBlemish& suggestion, PixelPosition place) {
    return std::hypot(static_cast<double>(suggestion.middle.row - place.row),
                      static_cast<double>(suggestion.middle.column - place.column)) < 4;
}

TEST(BlemishFinder, FindsDarkRedAndLightSpotsOnAnySkinTone) {
    for (const Color& color : {kFair, kDeep}) {
        const std::vector<Mark> marks = {
            {{300, 250}, 5, kDark}, {{420, 420}, 5, kReddish}, {{500, 300}, 5, kLight}};
        const std::vector<SuggestedBlemish> found = suggestedOn(face(marks, color));
        ASSERT_EQ(3U, found.size()) << color[0];
        for (const auto& [mark, kind] :
             {std::pair(marks[0], SpotKind::Dark), std::pair(marks[1], SpotKind::Red),
              std::pair(marks[2], SpotKind::Light)}) {
            const auto it = std::ranges::find_if(
                found, [&](const SuggestedBlemish& each) { return isAt(each, mark.middle); });
            ASSERT_NE(found.end(), it) << color[0] << ", row " << mark.middle.row;
            EXPECT_EQ(kind, it->kind);
            EXPECT_GT(it->radius, 4);
            EXPECT_LT(it->radius, 12);
        }
    }
}

TEST(BlemishFinder, FindsFaintSpotsWhereTheLightFallsOff) {
    const Mark dark{{380, 450}, 5, {0.97, 0.91, 0.93}};
    const Mark light{{380, 330}, 5, {1.06, 1.09, 1.09}};
    const std::vector<SuggestedBlemish> found = suggestedOn(face({dark, light}, kFair, 0.9));
    ASSERT_EQ(2U, found.size());
    EXPECT_TRUE(isAt(found[0], dark.middle));
    EXPECT_TRUE(isAt(found[1], light.middle));
}

TEST(BlemishFinder, SuggestsTheStrongestFirst) {
    const std::vector<SuggestedBlemish> found = suggestedOn(face(
        {{{300, 250}, 5, {0.9, 0.85, 0.88}}, {{420, 420}, 5, kDark}, {{500, 300}, 5, {0.8, 0.75, 0.8}}}));
    ASSERT_EQ(3U, found.size());
    EXPECT_TRUE(isAt(found[0], {420, 420}));
    EXPECT_TRUE(isAt(found[1], {500, 300}));
    EXPECT_TRUE(isAt(found[2], {300, 250}));
}

TEST(BlemishFinder, SuggestsNothingOnCleanSkinOrWithoutSkin) {
    EXPECT_TRUE(suggestedOn(face({})).empty());
    EXPECT_TRUE(suggestedOn(face({{{300, 250}}}, {120, 130, 150})).empty());
    EXPECT_TRUE(suggestedOn(face({{{300, 250}}}, {150, 150, 150})).empty());
}

TEST(BlemishFinder, IgnoresSpotsInTheBackground) {
    const std::vector<SuggestedBlemish> found = suggestedOn(face({{{60, 60}}, {{740, 600}}, {{300, 250}}}));
    ASSERT_EQ(1U, found.size());
    EXPECT_TRUE(isAt(found[0], {300, 250}));
}

TEST(BlemishFinder, IgnoresLinesAndFacialFeatures) {
    const Mark hair{{300, 250}, 2, {0.3, 0.3, 0.35}, 60};
    const Mark eye{{300, 440}, 22, {0.2, 0.25, 0.3}, 20};
    const Mark lips{{560, 350}, 25, {0.8, 0.5, 0.55}, 60};
    EXPECT_TRUE(suggestedOn(face({hair, eye, lips})).empty());
}

TEST(BlemishFinder, IgnoresGroupsOfFreckles) {
    std::vector<Mark> freckles;
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 6; ++j)
            freckles.push_back(
                {{330 + 17 * i + 5 * (j % 3), 200 + 18 * j + 4 * (i % 2)}, 3.5, {0.85, 0.75, 0.7}});
    std::vector<Mark> marks = freckles;
    marks.push_back({{600, 420}, 5, kDark});
    const std::vector<SuggestedBlemish> found = suggestedOn(face(marks));
    ASSERT_FALSE(found.empty());
    EXPECT_TRUE(isAt(found[0], {600, 420}));
    EXPECT_LT(found.size(), 8U) << "of 36 freckles";
    EXPECT_EQ(1U, suggestedOn(face({freckles[0]})).size()) << "a single one is a spot";
}

TEST(BlemishFinder, IsDeterministic) {
    const Image image = face({{{300, 250}}, {{420, 420}, 5, kReddish}, {{500, 300}, 7, kDark}});
    EXPECT_EQ(suggestedOn(image), suggestedOn(image));
}

TEST(BlemishFinder, AnUpdateRepeatsTheSearchAroundAnEdit) {
    const Mark first{{300, 250}};
    const Mark second{{420, 420}};
    const Image before = face({first, second});
    BlemishFinder finder(before);
    ASSERT_EQ(2U, finder.suggestions().size());
    const Image repaired =
        ImageTools::HealPimpleInImage(before, centreOf(first.middle, before.size()), 12, kThreshold).value();
    finder.update(repaired, before.difference(repaired));
    ASSERT_EQ(1U, finder.suggestions().size());
    EXPECT_TRUE(isAt(finder.suggestions()[0], second.middle));
    finder.update(before, repaired.difference(before));
    EXPECT_EQ(suggestedOn(before), finder.suggestions());
}

TEST(BlemishFinder, SupportsPicturesOfAnySize) {
    for (const PixelSize size : {PixelSize{1, 1}, {2, 3}, {1, 900}, {257, 65}, {3000, 7}})
        EXPECT_LE(suggestedOn(painted(size,
                                      [](int row, int column) {
                                          return (row + column) % 5 ? RGBA32(210, 165, 140, 255)
                                                                    : RGBA32(120, 70, 60, 255);
                                      }))
                      .size(),
                  static_cast<std::size_t>(BlemishFinder::kMaxSuggestions));
    EXPECT_TRUE(suggestedOn(noise({300, 200})).empty());
}

} // namespace
} // namespace complexion
