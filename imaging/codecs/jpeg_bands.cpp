// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_bands.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/changed_rows.h"
#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/codecs/jpeg_scan.h"

#include <utility>

namespace complexion {

namespace {

using Tables = std::shared_ptr<const JpegPictureTables>;

/// Changed block rows that lie together are coded by so many in one go: the library's preparations cost about
/// as much as a tenth of such a row of a large picture, and several cores can share the work.
constexpr int kMaxRowsPerPass = 3;

/// A band's coded bytes, and what they were coded from: the tables, and the tiles (of a stored band).
struct JpegBand : Memo::Value {
    Tables tables;
    TileList tiles;
    std::shared_ptr<const Bytes> bytes;
};
using JpegBandPointer = std::shared_ptr<const JpegBand>;

/// Some block rows of a band that are coded in one go.
struct Stretch {
    int first = 0;
    int count = 0;
    Result<Bytes> coded = Bytes();
};

/// How a band's bytes are to be made.
struct Plan {
    int band = 0;
    int blockRows = 0;
    JpegBandPointer before; // what is coded of the other block rows; null when all are coded
    std::vector<Stretch> stretches;
};

Plan planFor(const Image& image, int index, const Tables& tables) {
    const int blockRows = (image.bandRect(index).height + kJpegBlockRows - 1) / kJpegBlockRows;
    Plan plan{.band = index, .blockRows = blockRows, .before = nullptr, .stretches = {}};
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const JpegBandPointer before = band ? band->encoded().getOutdated<JpegBand>() : nullptr;
    if (!before || before->tables != tables) {
        plan.stretches.push_back({.first = 0, .count = blockRows});
        return plan;
    }
    plan.before = before;
    const std::vector<bool> changed = changedRows(*band, before->tiles, kJpegBlockRows);
    for (int row = 0; row < static_cast<int>(changed.size()); ++row) {
        if (!changed[static_cast<std::size_t>(row)])
            continue;
        Stretch* last = plan.stretches.empty() ? nullptr : &plan.stretches.back();
        if (last && last->first + last->count == row && last->count < kMaxRowsPerPass)
            ++last->count;
        else
            plan.stretches.push_back({.first = row, .count = 1});
    }
    return plan;
}

void code(const Image& image, int band, const Tables& tables, Stretch& stretch) {
    const PixelRect whole = image.bandRect(band);
    const int first = stretch.first * kJpegBlockRows;
    const int height = std::min(stretch.count * kJpegBlockRows, whole.height - first);
    const PixelBlock rows = PixelBlock::uninitialized({whole.width, height});
    image.read({0, whole.y + first, whole.width, height}, rows.pixels.get(), whole.width);
    stretch.coded = jpegIntervals(rows.size, rows.pixels.get(), tables->codes);
}

/// The band's bytes with those of the stretches in their places.
Bytes spliced(const Plan& plan) {
    std::vector<ByteView> rows = splitAtRestartMarkers(*plan.before->bytes).intervals;
    rows.resize(static_cast<std::size_t>(plan.blockRows));
    std::size_t length = plan.before->bytes->size();
    for (const Stretch& stretch : plan.stretches) {
        std::ranges::copy(splitAtRestartMarkers(*stretch.coded).intervals, rows.begin() + stretch.first);
        length += stretch.coded->size();
    }
    Bytes bytes;
    bytes.reserve(length);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (row > 0)
            appendRestartMarker(bytes, row);
        bytes.insert(bytes.end(), rows[row].begin(), rows[row].end());
    }
    return bytes;
}

/// Makes the plan's bytes and keeps them beside a stored band.
std::shared_ptr<const Bytes> carriedOut(Plan& plan, const Image& image, const Tables& tables) {
    const bool isWhole = !plan.before;
    auto bytes =
        std::make_shared<const Bytes>(isWhole ? std::move(*plan.stretches.front().coded) : spliced(plan));
    if (const std::shared_ptr<const Band> band = image.storedBand(plan.band)) {
        auto coded = std::make_shared<JpegBand>();
        coded->tables = tables;
        coded->tiles = band->tiles();
        coded->bytes = bytes;
        band->encoded().set(std::move(coded));
    }
    return bytes;
}

/// What is kept beside the band; null when that is nothing or was coded with other tables.
JpegBandPointer keptBand(const Image& image, int index, const Tables& tables) {
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const JpegBandPointer kept = band ? band->encoded().get<JpegBand>() : nullptr;
    return kept && kept->tables == tables ? kept : nullptr;
}

} // namespace

Result<std::vector<std::shared_ptr<const Bytes>>> codedJpegBands(const Image& image, const Tables& tables) {
    std::vector<std::shared_ptr<const Bytes>> result(static_cast<std::size_t>(image.bandCount()));
    std::vector<Plan> plans;
    for (int index = 0; index < image.bandCount(); ++index) {
        if (const JpegBandPointer kept = keptBand(image, index, tables))
            result[static_cast<std::size_t>(index)] = kept->bytes;
        else
            plans.push_back(planFor(image, index, tables));
    }
    std::vector<std::pair<int, Stretch*>> work;
    for (Plan& plan : plans)
        for (Stretch& stretch : plan.stretches)
            work.emplace_back(plan.band, &stretch);
    parallelFor(static_cast<int>(work.size()), [&](int i) {
        const auto [band, stretch] = work[static_cast<std::size_t>(i)];
        code(image, band, tables, *stretch);
    });
    for (const auto& [band, stretch] : work)
        if (!stretch->coded)
            return stretch->coded.error();
    for (Plan& plan : plans)
        result[static_cast<std::size_t>(plan.band)] = carriedOut(plan, image, tables);
    return result;
}

} // namespace complexion
