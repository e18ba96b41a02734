// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: repair_sensitivity [--list]
//
// Scores the natural repair on synthetic skin, with one constant of imaging/healing scaled if
// COMPLEXION_SCALED says so (tuned.h). Prints the mean visible error in grey levels, the mean deviation of
// the texture's strength, and a hash of all results. --list prints the file, name and value of each constant
// instead. sensitivity.py makes a table of it.
#include "benchmarks/repair/synthetic_skin.h"
#include "benchmarks/repair/tuned.h"
#include "imaging/base/rgba32.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace complexion {

namespace tuning {

namespace {

struct Constant {
    std::string file;
    std::string name;
    double value;
};

std::vector<Constant>& constants() {
    static std::vector<Constant> all;
    return all;
}

} // namespace

double factorOf(std::string_view file, std::string_view name, double value) {
    constants().push_back({std::string(file), std::string(name), value});
    const char* const setting = std::getenv("COMPLEXION_SCALED");
    const std::string key = constants().back().file + ':' + constants().back().name + '=';
    return setting && std::string_view(setting).starts_with(key) ? std::atof(setting + key.size()) : 1;
}

} // namespace tuning

namespace {

constexpr std::int64_t kThreshold = 10;

struct Case {
    SyntheticSkin skin;
    std::int64_t discRadius = 0; // of the click
    Point click;
};

/// Each kind of blemish in several sizes, click positions and disc sizes, on fair and deep skin; blemishes
/// beside a feature; and places where nothing is to be repaired: clean skin, and the edge of a feature.
std::vector<Case> makeCases() {
    constexpr SyntheticSkin::Color kFair{205, 160, 140};
    constexpr SyntheticSkin::Color kDeep{105, 68, 50};
    std::vector<Case> cases;
    for (const SyntheticSkin::Color& color : {kFair, kDeep})
        for (const double radius : {4.0, 8.0, 16.0, 32.0}) {
            const int side = 2 * static_cast<int>(7 * std::max(radius, 8.0));
            const SyntheticSkin skin{.size = {side, side}, .color = color, .radius = radius};
            // `disc` and `offset` of the click are in radii of the blemish.
            const auto add = [&](double disc, double offset, const auto& change) {
                const Point center = centreOf(skin.center(), {side * 1.0, side * 1.0});
                Case one{skin, std::llround(disc * radius) + 2, {center.x + offset * radius, center.y}};
                change(one.skin);
                cases.push_back(one);
            };
            add(1.5, 0, [](SyntheticSkin&) {});
            add(1.5, 0, [](SyntheticSkin& s) { s.stain = {0.95, 0.8, 0.82}; }); // faint and red
            add(1.5, 0, [](SyntheticSkin& s) { s.stain = {1.12, 1.2, 1.2}; });  // light
            add(1.5, 0, [](SyntheticSkin& s) { s.isRough = true; });
            add(1.5, 0.4, [](SyntheticSkin& s) { s.stain = {0.6, 0.5, 0.5}; });
            add(2.0, 0, [](SyntheticSkin& s) { s.aspect = 2; });
            add(0.8, 0, [](SyntheticSkin&) {});
            add(3.0, 0.3, [](SyntheticSkin& s) { s.shading = 0.3; });
            add(1.8, 0, [&](SyntheticSkin& s) { s.featureDistance = 1.5 * radius + 4; });
            add(1.5, 0, [](SyntheticSkin& s) { s.radius = 0; }); // clean skin
            add(2.5, 0, [&](SyntheticSkin& s) {
                s.radius = 0;
                s.featureDistance = 8;
            });
        }
    return cases;
}

/// The mean of red, green and blue.
std::vector<float> greyOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    image.read({0, 0, size.width, size.height}, pixels.data(), size.width);
    std::vector<float> grey;
    for (const RGBA32 pixel : pixels)
        grey.push_back(static_cast<float>(pixel.red() + pixel.green() + pixel.blue()) / 3);
    return grey;
}

/// Box blur, clipped at the edges.
std::vector<float> blurred(const std::vector<float>& values, PixelSize size, int reach) {
    const auto across = [&](const std::vector<float>& in, int width, int height, std::size_t step,
                            std::size_t stride) {
        std::vector<float> out(in.size());
        for (int line = 0; line < height; ++line)
            for (int i = 0; i < width; ++i) {
                float sum = 0;
                int count = 0;
                for (int k = std::max(i - reach, 0); k <= std::min(i + reach, width - 1); ++k, ++count)
                    sum += in[static_cast<std::size_t>(line) * stride + static_cast<std::size_t>(k) * step];
                out[static_cast<std::size_t>(line) * stride + static_cast<std::size_t>(i) * step] =
                    sum / static_cast<float>(count);
            }
        return out;
    };
    const auto width = static_cast<std::size_t>(size.width);
    return across(across(values, size.width, size.height, 1, width), size.height, size.width, width, 1);
}

/// Mean square of the second differences along rows within `radius` of the centre.
double textureOf(const std::vector<float>& grey, const SyntheticSkin& skin, double radius) {
    double sum = 1e-6;
    const auto reach = static_cast<std::int64_t>(radius);
    for (std::int64_t dy = -reach; dy <= reach; ++dy)
        for (std::int64_t dx = -reach; dx <= reach; ++dx) {
            if (dx * dx + dy * dy > reach * reach)
                continue;
            const auto i = static_cast<std::size_t>((skin.center().row + dy) * skin.size.width +
                                                    skin.center().column + dx);
            const float bend = 2 * grey[i] - grey[i - 1] - grey[i + 1];
            sum += static_cast<double>(bend * bend);
        }
    return sum;
}

struct Score {
    double error = 0;   // largest visible difference from the true skin, in grey levels
    double texture = 0; // |log2| of the ratio of the texture's variance to the true skin's
};

struct PreparedCase {
    Case one;
    Image picture;
    std::vector<float> truth;
    int blur; // differences finer than this are not visible as a stain
};

Score scoreOf(const PreparedCase& prepared, std::uint64_t& hash) {
    const SyntheticSkin& skin = prepared.one.skin;
    const std::optional<Image> result = ImageTools::HealPimpleInImage(prepared.picture, prepared.one.click,
                                                                      prepared.one.discRadius, kThreshold);
    if (!result)
        std::abort(); // memory is insufficient
    const std::vector<float> grey = greyOf(*result);
    std::vector<float> difference(grey.size());
    for (std::size_t i = 0; i < grey.size(); ++i) {
        difference[i] = grey[i] - prepared.truth[i];
        hash = (hash ^ static_cast<std::uint64_t>(3 * grey[i] + 0.5F)) * 0x100000001B3U;
    }
    Score score;
    for (const float value : blurred(difference, skin.size, prepared.blur))
        score.error = std::max(score.error, static_cast<double>(std::abs(value)));
    if (skin.radius > 0)
        score.texture = std::abs(
            std::log2(textureOf(grey, skin, skin.radius) / textureOf(prepared.truth, skin, skin.radius)));
    return score;
}

void printScore() {
    std::uint64_t hash = 0xCBF29CE484222325U;
    Score sum;
    int blemishes = 0;
    const std::vector<Case> cases = makeCases();
    for (const Case& one : cases) {
        const PreparedCase prepared{one, one.skin.picture(), greyOf(one.skin.truth()),
                                    std::max(1, static_cast<int>(one.skin.radius / 6))};
        const Score score = scoreOf(prepared, hash);
        sum.error += score.error;
        sum.texture += score.texture;
        blemishes += one.skin.radius > 0 ? 1 : 0;
    }
    std::printf("%.4f %.4f %016llx\n", sum.error / static_cast<double>(cases.size()),
                sum.texture / static_cast<double>(blemishes), static_cast<unsigned long long>(hash));
}

} // namespace
} // namespace complexion

int main(int count, char** arguments) {
    if (count == 2 && std::string_view(arguments[1]) == "--list")
        for (const complexion::tuning::Constant& one : complexion::tuning::constants())
            std::printf("%s %s %g\n", one.file.c_str(), one.name.c_str(), one.value);
    else if (count == 1)
        complexion::printScore();
    else {
        std::fprintf(stderr, "usage: repair_sensitivity [--list]\n");
        return 2;
    }
}
