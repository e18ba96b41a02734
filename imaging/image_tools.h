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

/// The disc of a click, sorted: what is to be repaired and the skin around it, each in scan order.
struct PimplePixels {
    std::vector<PixelPosition> repair;
    std::vector<PixelPosition> sample;
};

/// What `RemovePimpleFromImage` takes the colour from.
enum ColorType : std::int64_t {
    kCustomColor = 0,
    kAutodetectColor = 1,
};

/// Stateless operations on images and image files. Failures are told by the result and at most one line on
/// standard output; broken preconditions are fatal.
class ImageTools {
public:
    ImageTools() = delete;

    /// The file-name extensions of the accepted files.
    static constexpr std::array<std::string_view, 7> kAcceptedTypes = {"jpg", "jpeg", "png", "tiff",
                                                                       "tif", "gif",  "bmp"};

    // Blemish removal.

    /// Repairs the blemish around `point` (in points, bottom-left origin): within `radius` pixels, what is
    /// darker (or lighter) than the disc's mean grey by more than `threshold` levels (0 to 255 scale) is
    /// painted in the mean colour of the rest of the disc (`colorType` 1) or in `customColor` (0), a colour
    /// of the image's own space. Any other `colorType` paints nothing. A disc that reaches over the border
    /// gives the very image. No image when no pixel buffer can be had.
    static std::optional<Image> RemovePimpleFromImage(const Image& image, Point point, std::int64_t radius,
                                                      std::int64_t colorType, RgbColor customColor,
                                                      std::int64_t threshold);

    /// Repairs the blemish around `point` as RemovePimpleFromImage does, but naturally: what differs from the
    /// skin around it, near the disc's centre, gets the colour, the shading and the detail that this skin
    /// would have there. The smaller `threshold` (grey levels), the smaller a difference is repaired. A
    /// blemish that the disc does not hold is repaired as a whole, also beyond the disc, as long as it ends
    /// within kMaxHealingReach radii of the click. Keeps every pixel's alpha, and changes nothing where it
    /// finds no blemish or no skin around it. The same arguments give the same pixels on every machine.
    static std::optional<Image> HealPimpleInImage(const Image& image, Point point, std::int64_t radius,
                                                  std::int64_t threshold);

    /// How far from the click a natural repair paints at most, in radii of the edit disc.
    static constexpr double kMaxHealingReach = 2.8;

    /// The blemish that HealPimpleInImage repairs with the same arguments, or why it repairs none.
    static std::variant<BlemishPlace, BlemishRefusal>
    LocateBlemish(const Image& image, Point point, std::int64_t radius, std::int64_t threshold);

    /// The blemish that a disc of `radius` pixels around `point` is meant for, however well the disc fits it,
    /// by the search of HealPimpleInImage; or why there is none. What covers no more than a circle of radius
    /// `largerThan` is passed over.
    static std::variant<BlemishPlace, BlemishRefusal> FitBlemish(const Image& image, Point point,
                                                                 std::int64_t radius, std::int64_t threshold,
                                                                 double largerThan = 0);

    /// Sorts the disc's pixels; both lists are empty when the disc is not uniform across its centre.
    static PimplePixels FindPimplePixels(Point point, const Image& image, std::int64_t radius,
                                         std::int64_t threshold);

    // Grey and effects.

    /// The image in grey, opaque: (77 R + 151 G + 28 B + 128) >> 8 of the premultiplied components, which
    /// shows transparent pixels over black. Computed where it is read. Fatal for an image without pixels.
    static Image convertToGrayScale(const Image& inputImage);

    /// The image through one of the photo effects ("Chrome", "Fade", "Instant", "Mono", "Noir", "Process",
    /// "Tonal", "Transfer"), computed where it is read. Fatal for an image without pixels and for any other
    /// name.
    static Image ApplyEffectOnImage(const Image& image, std::string_view effectName);

    // Geometry.

    /// The largest width and the largest height in pixels of all pictures in the file, upright; nothing when
    /// the file cannot be decoded.
    static std::optional<PointSize> ImageActualSize(const std::filesystem::path& url);

    /// `image`, decoded from the file at `url`, at one point per pixel of that file: the very image when its
    /// size in points is that already. Fatal when the file cannot be decoded.
    static Image BringImageToActualSize(const Image& image, const std::filesystem::path& url);

    /// The whole image stretched to a size in points, at one pixel per point.
    static Image ResizeImage(const Image& image, double width, double height);

    // Files.

    /// The first picture of a file of any accepted type, whatever its name; nothing when it cannot be
    /// decoded.
    static std::optional<Image> DecodeImage(const std::filesystem::path& path);

    /// Writes the image, one pixel per point, as a file of the type that `format` names (one of
    /// kAcceptedTypes). True when the file was written, and when the format cannot hold the picture, without
    /// a file. False, with the target untouched, when `format` is none of ours or the file cannot be written.
    static bool SaveImage(const Image& image, const std::filesystem::path& path, std::string_view format);

    /// Gives the file at `croppedImagePath`, which SaveImage wrote, the metadata and the creation date of the
    /// photo at `originalImagePath`. Its pixels' coding is not touched. Prints "ERROR" when the date cannot
    /// be set; does nothing when either file cannot be opened. `picture`, unless empty, is what the file
    /// shows, at any resolution: it then need not be decoded for its thumbnail.
    static void ChangeImageExif(const std::filesystem::path& originalImagePath,
                                const std::filesystem::path& croppedImagePath, const Image& picture = {});

    /// When the file was made; now, when its attributes cannot be read.
    static std::chrono::system_clock::time_point ImageCreationDate(const std::filesystem::path& path);

    /// The orientation that ChangeImageExif will carry from the photo at `originalImagePath` to a file
    /// written as `format`: what its pixels have to be stored with. Upright where the format has no place for
    /// it.
    static Orientation CarriedOrientation(const std::filesystem::path& originalImagePath,
                                          std::string_view format);
};

} // namespace complexion
