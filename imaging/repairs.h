// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"
#include "imaging/base/result.h"
#include "imaging/changed_pixels.h"
#include "imaging/disc_side.h"
#include "imaging/healing/repair_disc.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace complexion {

/// Whether a repair changed the image, or why not.
enum class RepairOutcome {
    Repaired,
    NothingToRepair,  // no pixel of the disc differs by more than the threshold
    NotUniform,       // the skin varies too much across the disc
    ExtendsOutside,   // the region is part of something larger that extends beyond the disc
    FillsDisc,        // the region leaves too little skin in the disc
    NoSkin,           // there is no skin nearby to match
    TooCloseToBorder, // the disc extends over the photo's edge
};

/// An image after a repair.
struct Repaired {
    Image image;         // with the pixels of the original unless `outcome` is Repaired
    PixelMask repainted; // the pixels that changed
    RepairOutcome outcome = RepairOutcome::NothingToRepair;
    /// Where the skin differs; set for the outcomes NotUniform and ExtendsOutside.
    std::optional<DiscSide> side = {}; // NOLINT(readability-redundant-member-init): may be left out
};

/// What became of painting a disc.
struct PaintResult {
    RepairOutcome outcome;
    std::optional<DiscSide> side;

    PaintResult(RepairOutcome what, std::optional<DiscSide> where = std::nullopt)
        : outcome(what), side(where) {}
};

// The repairs report an error if memory runs out, or if the image has no pixels, and print a line then.

/// As ImageTools::RemovePimpleFromImage, with the same arguments.
Result<Repaired> repairInFlatColor(const Image& image, Point point, std::int64_t radius,
                                   std::int64_t colorType, RgbColor customColor, std::int64_t threshold);

/// As ImageTools::HealPimpleInImage, with the same arguments.
Result<Repaired> repairNaturally(const Image& image, Point point, std::int64_t radius,
                                 std::int64_t threshold);

/// Repairs a hair, a scratch, a scar or a crease naturally along a path of at least one point (in points,
/// bottom-left origin), within `radius` pixels of it. Parts outside the picture are ignored.
Result<Repaired> repairAlong(const Image& image, std::span<const Point> path, std::int64_t radius,
                             std::int64_t threshold);

/// The result of painting `before`, which made it `after`.
Repaired repairedAs(const Image& before, Image after);

/// Runs one of the repairs: `paint` paints the disc around `point`. It is not called if the disc is too close
/// to the border.
Result<Repaired> repairWith(const Image& image, Point point, std::int64_t radius,
                            const std::function<PaintResult(const RepairDisc&, PixelBuffer&)>& paint);

} // namespace complexion
