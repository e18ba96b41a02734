// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_effects.h"

#include "imaging/base/fatal.h"
#include "imaging/base/wide_vectors.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <array>
#include <string>

namespace complexion {

namespace {

/// The shares of red, green and blue that one component of the result is made of.
struct Shares {
    float red = 0;
    float green = 0;
    float blue = 0;
};

/// The shares of each component of the result; every row adds up to 1, so that grey stays grey.
struct Mix {
    Shares red;
    Shares green;
    Shares blue;
};

/// How bright the eye finds each component of device RGB; the weights of the grey conversion.
constexpr Shares kLuminance{0.30F, 0.59F, 0.11F};

/// One grey from the three components.
constexpr Mix grey(Shares shares) {
    return {shares, shares, shares};
}

/// The colour's distance from the grey of its own luminance, times `factor`.
constexpr Mix saturation(float factor) {
    const float rest = 1 - factor;
    const Shares base{rest * kLuminance.red, rest * kLuminance.green, rest * kLuminance.blue};
    return {{base.red + factor, base.green, base.blue},
            {base.red, base.green + factor, base.blue},
            {base.red, base.green, base.blue + factor}};
}

/// A cubic curve of levels, named by what it makes of black, of the levels 85 and 170, and of white.
/// Values beyond 0 and 255 are cut off.
class Curve {
public:
    constexpr Curve(float black, float third, float twoThirds, float white)
        : m_constant(black),
          // Newton's divided differences, the step being 85 levels, put in order of powers.
          m_linear((-11 * black + 18 * third - 9 * twoThirds + 2 * white) / (6 * kStep)),
          m_square((2 * black - 5 * third + 4 * twoThirds - white) / (2 * kStep * kStep)),
          m_cubic((-black + 3 * third - 3 * twoThirds + white) / (6 * kStep * kStep * kStep)) {}

    constexpr float operator()(float level) const {
        return ((m_cubic * level + m_square) * level + m_linear) * level + m_constant;
    }

    /// Whether brighter never becomes darker. The margin keeps rounding from undoing it.
    constexpr bool rises() const {
        constexpr float kMargin = 0.005F;
        for (int level = 0; level < 255; ++level)
            if ((*this)(static_cast<float>(level) + 1) < (*this)(static_cast<float>(level)) + kMargin)
                return false;
        return true;
    }

private:
    static constexpr float kStep = 85;

    float m_constant;
    float m_linear;
    float m_square;
    float m_cubic;
};

/// An effect: the components are mixed, then each goes through its curve.
struct Recipe {
    std::string_view name;
    Mix mix;
    Curve red;
    Curve green;
    Curve blue;
};

// The looks, to be tuned by eye:
//   Chrome     richer colours, a little more contrast
//   Fade       washed out, blacks lifted
//   Instant    an old instant print: warm highlights, greenish-blue shadows, low contrast
//   Mono       soft black and white; more green than the eye sees evens out skin
//   Noir       black and white of high contrast, deep blacks
//   Process    film in the wrong bath: greenish-blue all over, lively contrast
//   Tonal      black and white as bright as the photo was
//   Transfer   vintage and warm: yellow highlights, reddish lifted shadows
constexpr std::array kRecipes{
    Recipe{.name = "Chrome",
           .mix = saturation(1.22F),
           .red = {0, 81, 175, 255},
           .green = {0, 81, 175, 255},
           .blue = {0, 81, 175, 255}},
    Recipe{.name = "Fade",
           .mix = saturation(0.90F),
           .red = {40, 104, 171, 236},
           .green = {40, 104, 171, 236},
           .blue = {40, 104, 171, 236}},
    Recipe{.name = "Instant",
           .mix = saturation(0.95F),
           .red = {20, 86, 178, 250},
           .green = {32, 100, 175, 240},
           .blue = {33, 98, 156, 214}},
    Recipe{.name = "Mono",
           .mix = grey({0.24F, 0.66F, 0.10F}),
           .red = {18, 96, 174, 244},
           .green = {18, 96, 174, 244},
           .blue = {18, 96, 174, 244}},
    Recipe{.name = "Noir",
           .mix = grey({0.30F, 0.60F, 0.10F}),
           .red = {-10, 58, 180, 262},
           .green = {-10, 58, 180, 262},
           .blue = {-10, 58, 180, 262}},
    Recipe{.name = "Process",
           .mix = saturation(0.90F),
           .red = {4, 66, 158, 240},
           .green = {8, 88, 178, 252},
           .blue = {32, 106, 182, 250}},
    Recipe{.name = "Tonal",
           .mix = grey(kLuminance),
           .red = {0, 85, 170, 255},
           .green = {0, 85, 170, 255},
           .blue = {0, 85, 170, 255}},
    Recipe{.name = "Transfer",
           .mix = saturation(0.85F),
           .red = {36, 106, 188, 252},
           .green = {28, 92, 174, 243},
           .blue = {26, 78, 148, 214}},
};

static_assert(std::ranges::all_of(kRecipes, [](const Recipe& recipe) {
    return recipe.red.rises() && recipe.green.rises() && recipe.blue.rises();
}));

float mixed(const Shares& shares, float red, float green, float blue) {
    const float sum = shares.red * red + shares.green * green + shares.blue * blue;
    const float low = sum < 0 ? 0 : sum;
    return low > 255 ? 255 : low;
}

float cutOff(float level) {
    const float low = level < 0 ? 0 : level;
    return low > 255 ? 255 : low;
}

/// `level`, which is not negative, rounded half up.
std::uint32_t rounded(float level) {
    constexpr float kHalf = 0.5F;
    // Through a signed integer: the only conversion that the baseline instruction set does several at a time.
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(level + kHalf));
}

/// The compiler turns this loop into one over several pixels at a time.
COMPLEXION_WIDE_VECTORS
void applyToOpaque(Recipe recipe, std::span<RGBA32> pixels) {
    for (RGBA32& pixel : pixels) {
        const auto red = static_cast<float>(static_cast<std::int32_t>(pixel.color >> 24));
        const auto green = static_cast<float>(static_cast<std::int32_t>(pixel.color >> 16 & 255));
        const auto blue = static_cast<float>(static_cast<std::int32_t>(pixel.color >> 8 & 255));
        const float newRed = cutOff(recipe.red(mixed(recipe.mix.red, red, green, blue)));
        const float newGreen = cutOff(recipe.green(mixed(recipe.mix.green, red, green, blue)));
        const float newBlue = cutOff(recipe.blue(mixed(recipe.mix.blue, red, green, blue)));
        pixel.color = rounded(newRed) << 24 | rounded(newGreen) << 16 | rounded(newBlue) << 8 | 255;
    }
}

class PhotoEffect final : public PixelTransform {
public:
    explicit PhotoEffect(const Recipe& recipe) : m_recipe(recipe) {}

    void apply(std::span<RGBA32> pixels) const override {
        // In parts, so that a photo's half-covered edge does not slow down all between.
        constexpr std::size_t kPart = 128;
        for (; !pixels.empty(); pixels = pixels.subspan(std::min(kPart, pixels.size()))) {
            const std::span<RGBA32> part = pixels.first(std::min(kPart, pixels.size()));
            std::uint32_t alphas = 255;
            for (const RGBA32& pixel : part)
                alphas &= pixel.color;
            if (alphas == 255)
                applyToOpaque(m_recipe, part);
            else
                applyToAny(part);
        }
    }

private:
    /// The effect is one of the colour before premultiplication, which translucent pixels lack the levels
    /// for: so in floats, rounded once.
    void applyToAny(std::span<RGBA32> pixels) const {
        for (RGBA32& pixel : pixels) {
            if (pixel.alpha() == 0)
                continue;
            const float opacity = static_cast<float>(pixel.alpha()) / 255;
            const float red = cutOff(static_cast<float>(pixel.red()) / opacity);
            const float green = cutOff(static_cast<float>(pixel.green()) / opacity);
            const float blue = cutOff(static_cast<float>(pixel.blue()) / opacity);
            const auto part = [&](const Curve& curve, const Shares& shares) {
                return rounded(cutOff(curve(mixed(shares, red, green, blue))) * opacity);
            };
            pixel.color = part(m_recipe.red, m_recipe.mix.red) << 24 |
                          part(m_recipe.green, m_recipe.mix.green) << 16 |
                          part(m_recipe.blue, m_recipe.mix.blue) << 8 | pixel.alpha();
        }
    }

    Recipe m_recipe;
};

} // namespace

std::shared_ptr<const PixelTransform> photoEffect(std::string_view name) {
    static const auto effects = [] {
        std::array<std::shared_ptr<const PixelTransform>, kRecipes.size()> all;
        std::ranges::transform(kRecipes, all.begin(), [](const Recipe& recipe) {
            return std::make_shared<const PhotoEffect>(recipe);
        });
        return all;
    }();
    const auto found = std::ranges::find(kRecipes, name, &Recipe::name);
    return found == kRecipes.end() ? nullptr : effects[static_cast<std::size_t>(found - kRecipes.begin())];
}

Image ImageTools::ApplyEffectOnImage(const Image& image, std::string_view effectName) {
    if (!image.hasPixels())
        fatal("an effect needs an image with pixels");
    std::shared_ptr<const PixelTransform> effect = photoEffect(effectName);
    if (!effect)
        fatal("no photo effect has the name \"" + std::string(effectName) + "\"");
    return image.transformed(std::move(effect));
}

} // namespace complexion
