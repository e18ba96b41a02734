// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_bands.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/changed_rows.h"
#include "imaging/codecs/jpeg_compressor.h"
#include "imaging/codecs/jpeg_scan.h"

#include <utility>

namespace complexion::jpeg {

namespace {

using Tables = std::shared_ptr<const PictureTables>;

/// Adjacent changed block rows are encoded together, up to this many. Setting up the library costs about a
/// tenth of encoding one block row of a large picture; short runs let several cores share the work.
constexpr int kMaxRowsPerRun = 3;

/// A band's entropy-encoded bytes, with the tables and (for a stored band) the tiles they were encoded from.
struct EncodedBand : Memo::Value {
    Tables tables;
    TileList tiles;
    std::shared_ptr<const Bytes> bytes;
};
using EncodedBandPointer = std::shared_ptr<const EncodedBand>;

/// A run of block rows of a band that is encoded in one call.
struct Run {
    int first = 0;
    int count = 0;
    Result<Bytes> encoded = Bytes();
};

/// What has to be encoded to complete a band's bytes.
struct Plan {
    int band = 0;
    int blockRows = 0;
    EncodedBandPointer before; // supplies the other block rows; null if all are encoded
    std::vector<Run> runs;
};

Plan planFor(const Image& image, int index, const Tables& tables) {
    const int blockRows = (image.bandRect(index).height + kBlockRowHeight - 1) / kBlockRowHeight;
    Plan plan{.band = index, .blockRows = blockRows, .before = nullptr, .runs = {}};
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const EncodedBandPointer before = band ? band->encoded().getOutdated<EncodedBand>() : nullptr;
    if (!before || before->tables != tables) {
        plan.runs.push_back({.first = 0, .count = blockRows});
        return plan;
    }
    plan.before = before;
    const std::vector<bool> changed = changedRows(*band, before->tiles, kBlockRowHeight);
    for (int row = 0; row < static_cast<int>(changed.size()); ++row) {
        if (!changed[static_cast<std::size_t>(row)])
            continue;
        Run* last = plan.runs.empty() ? nullptr : &plan.runs.back();
        if (last && last->first + last->count == row && last->count < kMaxRowsPerRun)
            ++last->count;
        else
            plan.runs.push_back({.first = row, .count = 1});
    }
    return plan;
}

void encodeRun(const Image& image, int band, const Tables& tables, Run& run) {
    const PixelRect whole = image.bandRect(band);
    const int first = run.first * kBlockRowHeight;
    const int height = std::min(run.count * kBlockRowHeight, whole.height - first);
    const PixelBlock rows = PixelBlock::uninitialized({whole.width, height});
    image.read({0, whole.y + first, whole.width, height}, rows.pixels.get(), whole.width);
    run.encoded = encodeBlockRows(rows.size, rows.pixels.get(), tables->codes);
}

/// The band's previous bytes with the newly encoded runs in place of the old ones.
Bytes spliced(const Plan& plan) {
    std::vector<ByteView> rows = splitAtRestartMarkers(*plan.before->bytes).intervals;
    rows.resize(static_cast<std::size_t>(plan.blockRows));
    std::size_t length = plan.before->bytes->size();
    for (const Run& run : plan.runs) {
        std::ranges::copy(splitAtRestartMarkers(*run.encoded).intervals, rows.begin() + run.first);
        length += run.encoded->size();
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

/// Assembles the band's bytes and caches them beside a stored band.
std::shared_ptr<const Bytes> assembled(Plan& plan, const Image& image, const Tables& tables) {
    const bool isWhole = !plan.before;
    auto bytes =
        std::make_shared<const Bytes>(isWhole ? std::move(*plan.runs.front().encoded) : spliced(plan));
    if (const std::shared_ptr<const Band> band = image.storedBand(plan.band)) {
        auto encoded = std::make_shared<EncodedBand>();
        encoded->tables = tables;
        encoded->tiles = band->tiles();
        encoded->bytes = bytes;
        band->encoded().set(std::move(encoded));
    }
    return bytes;
}

/// What is cached beside the band; null if there is nothing or it was encoded with other tables.
EncodedBandPointer cachedBand(const Image& image, int index, const Tables& tables) {
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const EncodedBandPointer cached = band ? band->encoded().get<EncodedBand>() : nullptr;
    return cached && cached->tables == tables ? cached : nullptr;
}

} // namespace

Result<std::vector<std::shared_ptr<const Bytes>>> encodeBands(const Image& image, const Tables& tables) {
    std::vector<std::shared_ptr<const Bytes>> result(static_cast<std::size_t>(image.bandCount()));
    std::vector<Plan> plans;
    for (int index = 0; index < image.bandCount(); ++index) {
        if (const EncodedBandPointer cached = cachedBand(image, index, tables))
            result[static_cast<std::size_t>(index)] = cached->bytes;
        else
            plans.push_back(planFor(image, index, tables));
    }
    std::vector<std::pair<int, Run*>> work;
    for (Plan& plan : plans)
        for (Run& run : plan.runs)
            work.emplace_back(plan.band, &run);
    parallelFor(static_cast<int>(work.size()), [&](int i) {
        const auto [band, run] = work[static_cast<std::size_t>(i)];
        encodeRun(image, band, tables, *run);
    });
    for (const auto& [band, run] : work)
        if (!run->encoded)
            return run->encoded.error();
    for (Plan& plan : plans)
        result[static_cast<std::size_t>(plan.band)] = assembled(plan, image, tables);
    return result;
}

} // namespace complexion::jpeg
