// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/tiff_resolution.h"

#include <algorithm>
#include <cmath>

namespace complexion {

namespace {

// TIFF's numbers for the units of resolution; Resolution counts from 0.
constexpr std::uint64_t kUnitNone = 1;
constexpr std::uint64_t kUnitInch = 2;

double rationalOf(const TiffEntry* entry, ByteOrder order) {
    if (!entry || entry->type != type::kRational)
        return 0;
    const auto denominator = static_cast<double>(numberAt(entry->value, 4, 4, order));
    return denominator > 0 ? static_cast<double>(numberAt(entry->value, 0, 4, order)) / denominator : 0;
}

TiffEntry rationalEntry(unsigned tag, double value, ByteOrder order) {
    // Four decimals are finer than any density's meaning and leave room for 400,000 to the inch.
    constexpr std::uint64_t kDenominator = 10'000;
    const double whole = std::clamp(std::round(value), 0.0, static_cast<double>(UINT32_MAX));
    TiffEntry entry;
    entry.tag = tag;
    entry.type = type::kRational;
    entry.count = 1;
    const bool isWhole = whole == value || value * kDenominator > UINT32_MAX;
    appendNumber(entry.value, 4, order,
                 static_cast<std::uint64_t>(isWhole ? whole : std::round(value * kDenominator)));
    appendNumber(entry.value, 4, order, isWhole ? 1 : kDenominator);
    return entry;
}

} // namespace

std::optional<Resolution> resolutionOf(const CarriedTags& tags) {
    Resolution resolution;
    resolution.across = rationalOf(tags.directory.find(tag::kXResolution), tags.order);
    resolution.down = rationalOf(tags.directory.find(tag::kYResolution), tags.order);
    if (resolution.across <= 0 || resolution.down <= 0)
        return std::nullopt;
    const TiffEntry* entry = tags.directory.find(tag::kResolutionUnit);
    const std::uint64_t unit = entry ? firstNumber(*entry, tags.order) : kUnitInch;
    if (unit < kUnitNone || unit > kUnitNone + 2)
        return std::nullopt;
    resolution.unit = static_cast<Resolution::Unit>(unit - kUnitNone);
    return resolution;
}

void setResolution(CarriedTags& tags, const Resolution& resolution) {
    std::vector<TiffEntry>& entries = tags.directory.entries;
    std::erase_if(entries, [](const TiffEntry& entry) {
        return entry.tag == tag::kXResolution || entry.tag == tag::kYResolution ||
               entry.tag == tag::kResolutionUnit;
    });
    entries.push_back(rationalEntry(tag::kXResolution, resolution.across, tags.order));
    entries.push_back(rationalEntry(tag::kYResolution, resolution.down, tags.order));
    const std::uint64_t unit = static_cast<std::uint64_t>(resolution.unit) + kUnitNone;
    entries.push_back(entryOfNumbers(tag::kResolutionUnit, type::kShort, {unit}, tags.order));
}

Bytes exifWithResolution(ByteView exif, const Resolution& resolution) {
    CarriedTags tags = carriedTags(exif);
    setResolution(tags, resolution);
    return exifBlock(tags);
}

} // namespace complexion
