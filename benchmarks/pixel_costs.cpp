// SPDX-License-Identifier: GPL-3.0-or-later

// Nanoseconds of one thread for a pixel: converting it to the screen's colours, and applying an effect.
#include "benchmarks/color_spaces.h"
#include "benchmarks/portraits.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/photo_effects.h"
#include "imaging/screen_colors.h"
#include "tests/fakes/profiles.h"

#include <algorithm>

namespace complexion::bench {

namespace {

constexpr double kNanosecond = 1e-9;

/// `transforms` are variants.
Row pixelCost(const std::string& name, double limit,
              const std::function<std::vector<std::shared_ptr<const PixelTransform>>()>& transforms) {
    return {.name = rowName(name, 12), .goal = atMost(limit), .prepare = [=]() -> Round {
                const auto pixels = std::make_shared<std::vector<RGBA32>>(portrait(12).pixels);
                return [pixels, all = transforms()](Samples& samples) {
                    // The row length of a frame, as when painting.
                    constexpr std::size_t kRow = 1920;
                    std::vector<RGBA32> row(kRow);
                    int variant = 0;
                    for (const auto& transform : all) {
                        double seconds = 0;
                        std::size_t count = 0;
                        for (std::size_t begin = 0; begin + kRow <= pixels->size(); begin += 8 * kRow) {
                            std::copy_n(pixels->begin() + static_cast<std::ptrdiff_t>(begin), kRow,
                                        row.begin());
                            seconds += secondsOf([&] { transform->apply(row); });
                            count += kRow;
                        }
                        samples.add(seconds / static_cast<double>(count), kNanosecond, variant++);
                    }
                };
            }};
}

} // namespace

void addPixelCostRows() {
    addRow(pixelCost("convert_p3", 4, [] { return std::vector{screenTransform(displayP3())}; }));
    addRow(pixelCost("convert_table", 8,
                     [] { return std::vector{screenTransform(ColorProfile::fromIcc(tableProfile()))}; }));
    addRow(pixelCost("effect_pixel", 8, [] {
        std::vector<std::shared_ptr<const PixelTransform>> all;
        for (const char* const name :
             {"Chrome", "Fade", "Instant", "Mono", "Noir", "Process", "Tonal", "Transfer"})
            all.push_back(photoEffect(name));
        return all;
    }));
}

} // namespace complexion::bench
