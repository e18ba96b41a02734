// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"
#include "imaging/base/geometry.h"
#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/healing/blemish_place.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace complexion {

/// The pixels of an edit disc: those to repair and the skin around them, each in raster order.
struct PimplePixels {
    std::vector<PixelPosition> repair;
    std::vector<PixelPosition> sample;
};

/// Where `RemovePimpleFromImage` takes the colour from.
enum ColorType : std::int64_t {
    kCustomColor = 0,
    kAutodetectColor = 1,
};

/// Stateless operations on images and image files. Failures are reported by the result and at most one line
/// on standard output; broken preconditions are fatal.
class ImageTools {
public:
    ImageTools() = delete;

    /// The file-name extensions of the accepted files.
    static constexpr std::array<std::string_view, 7> kAcceptedTypes = {"jpg", "jpeg", "png", "tiff",
                                                                       "tif", "gif",  "bmp"};

    // Blemish removal.

    /// Repairs the blemish around `point` (in points, bottom-left origin). Within `radius` pixels, pixels
    /// that are darker (or lighter) than the disc's mean grey by more than `threshold` levels (0 to 255) are
    /// painted in the mean colour of the rest of the disc (`colorType` 1) or in `customColor` (0), a colour
    /// in the image's own space. Any other `colorType` paints nothing. Returns the same image if the disc
    /// reaches over the border. Nothing if no pixel buffer can be opened.
    static std::optional<Image> RemovePimpleFromImage(const Image& image, Point point, std::int64_t radius,
                                                      std::int64_t colorType, RgbColor customColor,
                                                      std::int64_t threshold);

    /// Repairs the blemish around `point` as RemovePimpleFromImage does, but naturally: pixels near the
    /// disc's centre that differ from the skin around it get the colour, shading and detail that the skin
    /// would have there. A smaller `threshold` (grey levels) repairs smaller differences. A blemish larger
    /// than the disc is repaired as a whole, if it ends within kMaxHealingReach radii of the click. Preserves
    /// alpha. Changes nothing if it finds no blemish, or no skin around it. The same arguments give the same
    /// pixels on every machine.
    static std::optional<Image> HealPimpleInImage(const Image& image, Point point, std::int64_t radius,
                                                  std::int64_t threshold);

    /// How far from the click a natural repair may paint, in radii of the edit disc.
    static constexpr double kMaxHealingReach = 2.8;

    /// The blemish that HealPimpleInImage repairs with the same arguments, or why it repairs none.
    static std::variant<BlemishPlace, BlemishRefusal>
    LocateBlemish(const Image& image, Point point, std::int64_t radius, std::int64_t threshold);

    /// The blemish under a disc of `radius` pixels around `point`, even if the disc does not fit it, found by
    /// the search of HealPimpleInImage; or why there is none. Skips regions no larger than a circle of radius
    /// `largerThan`.
    static std::variant<BlemishPlace, BlemishRefusal> FitBlemish(const Image& image, Point point,
                                                                 std::int64_t radius, std::int64_t threshold,
                                                                 double largerThan = 0);

    /// Classifies the disc's pixels. Both lists are empty if the disc is not uniform across its centre.
    static PimplePixels FindPimplePixels(Point point, const Image& image, std::int64_t radius,
                                         std::int64_t threshold);

    // Grey and effects.

    /// The image in grey, opaque: (77 R + 151 G + 28 B + 128) >> 8 of the premultiplied components, which
    /// shows transparent pixels over black. Computed on demand. Fatal for an image without pixels.
    static Image convertToGrayScale(const Image& inputImage);

    /// Applies a photo effect ("Chrome", "Fade", "Instant", "Mono", "Noir", "Process", "Tonal", "Transfer"),
    /// computed on demand. Fatal for an image without pixels and for any other name.
    static Image ApplyEffectOnImage(const Image& image, std::string_view effectName);

    // Geometry.

    /// The largest width and the largest height in pixels of all pictures in the file, upright. Nothing if
    /// the file cannot be decoded.
    static std::optional<PointSize> ImageActualSize(const std::filesystem::path& url);

    /// Resamples `image`, decoded from the file at `url`, to one point per pixel of that file. Returns the
    /// same image if it has that size in points. Fatal if the file cannot be decoded.
    static Image BringImageToActualSize(const Image& image, const std::filesystem::path& url);

    /// Resamples the whole image to a size in points, at one pixel per point.
    static Image ResizeImage(const Image& image, double width, double height);

    // Files.

    /// Decodes the first picture of a file of any accepted type, whatever its name. Nothing if it cannot be
    /// decoded.
    static std::optional<Image> DecodeImage(const std::filesystem::path& path);

    /// Writes the image, at one pixel per point, as a file of type `format` (one of kAcceptedTypes). True if
    /// the file was written, and also, without a file, if the format cannot hold the picture. False, with the
    /// target unchanged, if `format` is unknown or the file cannot be written.
    static bool SaveImage(const Image& image, const std::filesystem::path& path, std::string_view format);

    /// Gives the file at `croppedImagePath`, which SaveImage wrote, the metadata and the creation date of the
    /// photo at `originalImagePath`. The coded pixels stay unchanged. Prints "ERROR" if the date cannot be
    /// set; does nothing if either file cannot be opened. `picture`, unless empty, is the file's picture at
    /// any resolution, so that it need not be decoded for the thumbnail.
    static void ChangeImageExif(const std::filesystem::path& originalImagePath,
                                const std::filesystem::path& croppedImagePath, const Image& picture = {});

    /// The file's creation date; the current time if its attributes cannot be read.
    static std::chrono::system_clock::time_point ImageCreationDate(const std::filesystem::path& path);

    /// The orientation that ChangeImageExif will carry from the photo at `originalImagePath` to a file of
    /// type `format`, with which its pixels must be stored. TopLeft if the format cannot record an
    /// orientation.
    static Orientation CarriedOrientation(const std::filesystem::path& originalImagePath,
                                          std::string_view format);
};

} // namespace complexion
