// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/exif_basics.h"

#include <cstddef>

namespace complexion {

namespace {

// Tags, types and units of TIFF 6.0.
constexpr unsigned kTagOrientation = 274;
constexpr unsigned kTagXResolution = 282;
constexpr unsigned kTagYResolution = 283;
constexpr unsigned kTagResolutionUnit = 296;
constexpr unsigned kTypeShort = 3;
constexpr unsigned kTypeLong = 4;
constexpr unsigned kTypeRational = 5;
constexpr unsigned kUnitCentimetre = 3;
constexpr double kCentimetresPerInch = 2.54;
constexpr std::size_t kEntrySize = 12;

/// Reads numbers of a TIFF structure in its own byte order; what lies outside it reads as 0.
class TiffReader {
public:
    explicit TiffReader(ByteView bytes) : m_bytes(bytes), m_bigEndian(!bytes.empty() && bytes[0] == 'M') {}

    unsigned number16(std::size_t offset) const { return static_cast<unsigned>(number(offset, 2)); }
    std::uint32_t number32(std::size_t offset) const { return number(offset, 4); }

    double rational(std::size_t offset) const {
        const std::uint32_t denominator = number32(offset + 4);
        return denominator == 0 ? 0 : static_cast<double>(number32(offset)) / denominator;
    }

private:
    std::uint32_t number(std::size_t offset, std::size_t length) const {
        if (offset > m_bytes.size() || m_bytes.size() - offset < length)
            return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < length; ++i)
            value = value << 8 | m_bytes[offset + (m_bigEndian ? i : length - 1 - i)];
        return value;
    }

    ByteView m_bytes;
    bool m_bigEndian;
};

} // namespace

ExifBasics readExifBasics(ByteView exif) {
    ExifBasics basics;
    const TiffReader reader(exif);
    const std::size_t directory = reader.number32(4);
    const unsigned count = reader.number16(directory);
    Density density;
    double unit = 1;
    for (unsigned i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * kEntrySize;
        if (entry + kEntrySize > exif.size())
            break;
        const unsigned type = reader.number16(entry + 2);
        const std::size_t value = entry + 8;
        switch (reader.number16(entry)) {
        case kTagOrientation:
            // Some writers take a wider type than the one prescribed.
            if (type == kTypeShort || type == kTypeLong)
                basics.orientation = orientationFromTag(
                    static_cast<int>(type == kTypeShort ? reader.number16(value) : reader.number32(value)));
            break;
        case kTagXResolution:
            if (type == kTypeRational)
                density.horizontal = reader.rational(reader.number32(value));
            break;
        case kTagYResolution:
            if (type == kTypeRational)
                density.vertical = reader.rational(reader.number32(value));
            break;
        case kTagResolutionUnit:
            if (type == kTypeShort && reader.number16(value) == kUnitCentimetre)
                unit = kCentimetresPerInch;
            break;
        default:
            break;
        }
    }
    if (density.horizontal > 0 && density.vertical > 0)
        basics.density = Density{density.horizontal * unit, density.vertical * unit};
    return basics;
}

} // namespace complexion
