// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/exif_basics.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/tiff_structure.h"

namespace complexion {

namespace {

// TIFF 6.0.
constexpr std::uint64_t kUnitCentimetre = 3;
constexpr std::size_t kEntrySize = 12;

/// Reads numbers of a TIFF structure in its own byte order; what lies outside it reads as 0. Less strict than
/// readTiffHeader: bytes that begin as no such structure are taken for a little-endian one.
class LenientReader {
public:
    explicit LenientReader(ByteView bytes)
        : m_bytes(bytes), m_order(startsWith(bytes, "M") ? ByteOrder::BigEndian : ByteOrder::LittleEndian) {}

    std::uint64_t number16(std::uint64_t offset) const { return numberAt(m_bytes, offset, 2, m_order); }
    std::uint64_t number32(std::uint64_t offset) const { return numberAt(m_bytes, offset, 4, m_order); }

    double rational(std::uint64_t offset) const {
        const std::uint64_t denominator = number32(offset + 4);
        return denominator == 0 ? 0
                                : static_cast<double>(number32(offset)) / static_cast<double>(denominator);
    }

private:
    ByteView m_bytes;
    ByteOrder m_order;
};

} // namespace

ExifBasics readExifBasics(ByteView exif) {
    ExifBasics basics;
    const LenientReader reader(exif);
    const std::uint64_t directory = reader.number32(4);
    const std::uint64_t count = reader.number16(directory);
    Density density;
    double unit = 1;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t entry = directory + 2 + i * kEntrySize;
        if (entry + kEntrySize > exif.size())
            break;
        const std::uint64_t valueType = reader.number16(entry + 2);
        const std::uint64_t value = entry + 8;
        switch (reader.number16(entry)) {
        case tag::kOrientation:
            // Some writers take a wider type than the one prescribed.
            if (reader.number32(entry + 4) == 1 && (valueType == type::kShort || valueType == type::kLong))
                basics.orientation = orientationFromTag(static_cast<int>(
                    valueType == type::kShort ? reader.number16(value) : reader.number32(value)));
            break;
        case tag::kXResolution:
            if (valueType == type::kRational)
                density.horizontal = reader.rational(reader.number32(value));
            break;
        case tag::kYResolution:
            if (valueType == type::kRational)
                density.vertical = reader.rational(reader.number32(value));
            break;
        case tag::kResolutionUnit:
            if (valueType == type::kShort && reader.number16(value) == kUnitCentimetre)
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
