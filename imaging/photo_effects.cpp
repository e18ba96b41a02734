// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/photo_effects.h"

#include "imaging/base/fatal.h"
#include "imaging/base/wide_vectors.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>

namespace complexion {

namespace {

/// The weights of red, green and blue in one component of the result.
struct Weights {
    float red = 0;
    float green = 0;
    float blue = 0;
};

/// A channel mixer: the weights for each component of the result. Every row sums to 1, so that grey stays
/// grey.
struct Mix {
    Weights red;
    Weights green;
    Weights blue;
};

/// The luminance of each component of device RGB; the weights of the grey conversion.
constexpr Weights kLuminance{0.30F, 0.59F, 0.11F};

/// The same weights for all three components.
constexpr Mix grey(Weights weights) {
    return {weights, weights, weights};
}

/// Scales a colour's distance from the grey of its own luminance by `factor`.
constexpr Mix saturation(float factor) {
    const float rest = 1 - factor;
    const Weights base{rest * kLuminance.red, rest * kLuminance.green, rest * kLuminance.blue};
    return {{base.red + factor, base.green, base.blue},
            {base.red, base.green + factor, base.blue},
            {base.red, base.green, base.blue + factor}};
}

/// A cubic tone curve, defined by its values at black, at the levels 85 and 170, and at white. They may be
/// outside 0 to 255.
class ToneCurve {
public:
    constexpr ToneCurve(float black, float third, float twoThirds, float white)
        : m_constant(black),
          // Newton's divided differences with a step of 85 levels, expanded in powers.
          m_linear((-11 * black + 18 * third - 9 * twoThirds + 2 * white) / (6 * kStep)),
          m_square((2 * black - 5 * third + 4 * twoThirds - white) / (2 * kStep * kStep)),
          m_cubic((-black + 3 * third - 3 * twoThirds + white) / (6 * kStep * kStep * kStep)) {}

    constexpr float operator()(float level) const {
        return ((m_cubic * level + m_square) * level + m_linear) * level + m_constant;
    }

    /// Whether the curve is strictly increasing, with a margin for rounding.
    constexpr bool isIncreasing() const {
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

/// An effect: a channel mix, then a tone curve for each component.
struct Recipe {
    std::string_view name;
    Mix mix;
    ToneCurve red;
    ToneCurve green;
    ToneCurve blue;
};

// The looks, to be tuned by eye:
//   Chrome     richer colours, a little more contrast
//   Fade       washed out, blacks lifted
//   Instant    an old instant print: warm highlights, greenish-blue shadows, low contrast
//   Mono       soft black and white; extra weight on green evens out skin
//   Noir       black and white of high contrast, deep blacks
//   Process    cross-processed film: greenish-blue cast, lively contrast
//   Tonal      black and white that keeps the photo's luminance
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
    return recipe.red.isIncreasing() && recipe.green.isIncreasing() && recipe.blue.isIncreasing();
}));

/// `level` limited to 0 … 255. Floats from 0 up have the order of their bits as integers, and negative floats
/// are negative integers; compilers vectorise the limits of integers better.
float clamped(float level) {
    constexpr auto kMax = std::bit_cast<std::int32_t>(255.0F);
    return std::bit_cast<float>(std::clamp(std::bit_cast<std::int32_t>(level), 0, kMax));
}

float mixed(const Weights& weights, float red, float green, float blue) {
    return clamped(weights.red * red + weights.green * green + weights.blue * blue);
}

/// Rounds `level`, which is not negative, half up.
std::uint32_t rounded(float level) {
    constexpr float kHalf = 0.5F;
    // Via a signed integer: the only conversion that the baseline instruction set vectorises.
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(level + kHalf));
}

/// The nearest level from 0 to 255.
std::uint32_t nearestLevel(float level) {
    constexpr float kHalf = 0.5F;
    return static_cast<std::uint32_t>(std::clamp(static_cast<std::int32_t>(level + kHalf), 0, 255));
}

/// The compiler vectorises this loop.
COMPLEXION_WIDE_VECTORS
void applyToOpaque(Recipe recipe, std::span<RGBA32> pixels) {
    for (RGBA32& pixel : pixels) {
        const auto red = static_cast<float>(static_cast<std::int32_t>(pixel.color >> 24));
        const auto green = static_cast<float>(static_cast<std::int32_t>(pixel.color >> 16 & 255));
        const auto blue = static_cast<float>(static_cast<std::int32_t>(pixel.color >> 8 & 255));
        const float newRed = recipe.red(mixed(recipe.mix.red, red, green, blue));
        const float newGreen = recipe.green(mixed(recipe.mix.green, red, green, blue));
        const float newBlue = recipe.blue(mixed(recipe.mix.blue, red, green, blue));
        pixel.color =
            nearestLevel(newRed) << 24 | nearestLevel(newGreen) << 16 | nearestLevel(newBlue) << 8 | 255;
    }
}

bool areOpaque(std::span<const RGBA32> pixels) {
    std::uint32_t alphas = 255;
    for (const RGBA32& pixel : pixels)
        alphas &= pixel.color;
    return alphas == 255;
}

class PhotoEffect final : public PixelTransform {
public:
    explicit PhotoEffect(const Recipe& recipe) : m_recipe(recipe) {}

    void apply(std::span<RGBA32> pixels) const override {
        // In parts, so that translucent pixels at a photo's edge do not slow down the opaque ones.
        constexpr std::size_t kPart = 128;
        for (; !pixels.empty(); pixels = pixels.subspan(std::min(kPart, pixels.size()))) {
            const std::span<RGBA32> part = pixels.first(std::min(kPart, pixels.size()));
            if (areOpaque(part)) {
                applyToOpaque(m_recipe, part);
                continue;
            }
            const auto isOpaque = [](RGBA32 pixel) { return pixel.alpha() == 255; };
            const auto begin = std::ranges::find_if(part, isOpaque);
            const auto end = std::find_if(part.rbegin(), std::reverse_iterator(begin), isOpaque).base();
            const std::span<RGBA32> inner(begin, end);
            if (areOpaque(inner)) {
                applyToAny({part.begin(), begin});
                applyToOpaque(m_recipe, inner);
                applyToAny({end, part.end()});
            } else {
                applyToAny(part);
            }
        }
    }

private:
    /// Effects apply to straight colours. Those of translucent pixels are computed in floats and rounded
    /// once, as 8 bits would lose levels.
    void applyToAny(std::span<RGBA32> pixels) const {
        for (RGBA32& pixel : pixels) {
            if (pixel.alpha() == 0)
                continue;
            const float opacity = static_cast<float>(pixel.alpha()) / 255;
            const float red = clamped(static_cast<float>(pixel.red()) / opacity);
            const float green = clamped(static_cast<float>(pixel.green()) / opacity);
            const float blue = clamped(static_cast<float>(pixel.blue()) / opacity);
            const auto part = [&](const ToneCurve& curve, const Weights& weights) {
                return rounded(clamped(curve(mixed(weights, red, green, blue))) * opacity);
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
