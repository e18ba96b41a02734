// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/tiff_resolution.h"

#include <algorithm>
#include <cmath>

namespace complexion::tiff {

namespace {

// ResolutionUnit values (TIFF 6.0 section 8); Resolution::Unit counts from 0.
constexpr std::uint64_t kUnitNone = 1;
constexpr std::uint64_t kUnitInch = 2;

Entry rationalEntry(unsigned tag, double value, ByteOrder order) {
    // Four decimals are finer than any meaningful density and allow up to 400,000 dpi.
    constexpr std::uint64_t kDenominator = 10'000;
    const double whole = std::clamp(std::round(value), 0.0, static_cast<double>(UINT32_MAX));
    Entry entry;
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

double rationalOf(const Entry& entry, ByteOrder order) {
    if (entry.type != type::kRational)
        return 0;
    const auto denominator = static_cast<double>(numberAt(entry.value, 4, 4, order));
    return denominator > 0 ? static_cast<double>(numberAt(entry.value, 0, 4, order)) / denominator : 0;
}

std::optional<Resolution> resolutionOf(const Directory& directory, ByteOrder order) {
    Resolution resolution;
    if (const Entry* across = directory.find(tag::kXResolution))
        resolution.across = rationalOf(*across, order);
    if (const Entry* down = directory.find(tag::kYResolution))
        resolution.down = rationalOf(*down, order);
    if (resolution.across <= 0 || resolution.down <= 0)
        return std::nullopt;
    const Entry* entry = directory.find(tag::kResolutionUnit);
    const std::uint64_t unit = entry ? firstNumber(*entry, order) : kUnitInch;
    if (unit < kUnitNone || unit > kUnitNone + 2)
        return std::nullopt;
    resolution.unit = static_cast<Resolution::Unit>(unit - kUnitNone);
    return resolution;
}

void setResolution(Directory& directory, ByteOrder order, const Resolution& resolution) {
    std::vector<Entry>& entries = directory.entries;
    std::erase_if(entries, [](const Entry& entry) {
        return entry.tag == tag::kXResolution || entry.tag == tag::kYResolution ||
               entry.tag == tag::kResolutionUnit;
    });
    entries.push_back(rationalEntry(tag::kXResolution, resolution.across, order));
    entries.push_back(rationalEntry(tag::kYResolution, resolution.down, order));
    const std::uint64_t unit = static_cast<std::uint64_t>(resolution.unit) + kUnitNone;
    entries.push_back(entryOfNumbers(tag::kResolutionUnit, type::kShort, {unit}, order));
}

Bytes exifOfResolution(const Resolution& resolution) {
    constexpr ByteOrder kOrder = ByteOrder::LittleEndian;
    Directory directory;
    setResolution(directory, kOrder, resolution);
    Layout layout(kOrder, false);
    return layout.finish(layout.placeDirectory(directory));
}

} // namespace complexion::tiff
