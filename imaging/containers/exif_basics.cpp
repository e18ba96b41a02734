// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/exif_basics.h"

#include "imaging/containers/tiff_resolution.h"

namespace complexion::exif {

namespace {

tiff::Header lenientHeader(ByteView exif) {
    if (const auto header = tiff::readHeader(exif))
        return *header;
    tiff::Header header;
    header.order = startsWith(exif, "M") ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    header.firstDirectory = numberAt(exif, 4, 4, header.order);
    return header;
}

/// Some writers use LONG instead of the prescribed SHORT.
bool isOrientation(const tiff::Entry& entry) {
    return entry.tag == tiff::tag::kOrientation && entry.count == 1 &&
           (entry.type == tiff::type::kShort || entry.type == tiff::type::kLong);
}

} // namespace

Basics readBasics(ByteView exif) {
    constexpr std::uint64_t kCentimetres = 3; // ResolutionUnit (TIFF 6.0 section 8)
    Basics basics;
    const tiff::Header header = lenientHeader(exif);
    Resolution resolution{0, 0, Resolution::Unit::Inch};
    double unitsPerInch = 1;
    for (const tiff::Entry& entry : tiff::readDirectory(exif, header, header.firstDirectory).entries) {
        if (isOrientation(entry))
            basics.orientation = orientationFromTag(static_cast<int>(tiff::firstNumber(entry, header.order)));
        else if (entry.tag == tiff::tag::kXResolution)
            resolution.across = tiff::rationalOf(entry, header.order);
        else if (entry.tag == tiff::tag::kYResolution)
            resolution.down = tiff::rationalOf(entry, header.order);
        else if (entry.tag == tiff::tag::kResolutionUnit &&
                 tiff::firstNumber(entry, header.order) == kCentimetres)
            unitsPerInch = kCentimetresPerInch;
    }
    resolution.across *= unitsPerInch;
    resolution.down *= unitsPerInch;
    if (resolution.across > 0 && resolution.down > 0)
        basics.resolution = resolution;
    return basics;
}

} // namespace complexion::exif
