// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_bands.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/changed_rows.h"
#include "imaging/codecs/deflate.h"
#include "imaging/codecs/png_filter.h"
#include "imaging/containers/png_chunks.h"

#include <atomic>
#include <utility>

namespace complexion {

namespace {

/// A piece of a band is as little as is coded again alone: some rows, with so many pixels together that a
/// block of compressed data begins well, which costs up to 100 bytes.
constexpr std::int64_t kMinPieceArea = 16'384;
constexpr int kMinRows = 8;

int rowsOfPiece(int width) {
    int rows = kMinRows;
    while (rows < Tile::kHeight && std::int64_t{width} * rows < kMinPieceArea)
        rows *= 2;
    return rows;
}

/// The compressed data of some rows, which looks back into no other piece's, and what its file needs to know
/// of it.
struct PngPiece {
    bool opaque = false;
    bool withAlpha = false;   // whether it is coded as RGBA
    std::uint32_t adler = 0;  // of the data before compression
    std::uint64_t length = 0; // of the data before compression
    ByteView deflated;
    bool isCoded() const { return deflated.data() != nullptr; }
};

/// A band's image data chunk, the pieces in it, and the tiles that they were made from (of a stored band).
struct PngBand : Memo::Value {
    TileList tiles;
    std::vector<PngPiece> pieces;
    std::shared_ptr<const Bytes> chunk;
};
using PngBandPointer = std::shared_ptr<const PngBand>;

/// A band whose chunk is to be made.
struct Plan {
    int band = 0;
    PngBandPointer before;        // what some of the pieces are taken from
    std::vector<PngPiece> pieces; // some not coded yet
    std::vector<Bytes> coded;     // the others' bytes
};

Plan planFor(const Image& image, int index) {
    const PixelRect rect = image.bandRect(index);
    const int rows = rowsOfPiece(rect.width);
    const auto count = static_cast<std::size_t>((rect.height + rows - 1) / rows);
    Plan plan{.band = index, .before = nullptr, .pieces = std::vector<PngPiece>(count), .coded = {}};
    plan.coded.resize(count);
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const PngBandPointer before = band ? band->encoded().getOutdated<PngBand>() : nullptr;
    if (!before || before->pieces.size() != count)
        return plan;
    plan.before = before;
    const std::vector<bool> changed = changedRows(*band, before->tiles, rows);
    for (std::size_t i = 0; i < count; ++i) {
        // The first row's filter looks at the row above.
        const bool isSame = !changed[i] && (i == 0 || !changed[i - 1]);
        if (isSame)
            plan.pieces[i] = before->pieces[i];
    }
    return plan;
}

void code(const Image& image, Plan& plan, std::size_t piece, bool withAlpha) {
    const PixelRect band = image.bandRect(plan.band);
    const int rowsEach = rowsOfPiece(band.width);
    const int first = static_cast<int>(piece) * rowsEach;
    const int above = first > 0 ? 1 : 0; // row of a neighbour, for the filters; bands look at no other band
    const int height = std::min(rowsEach, band.height - first);
    const PixelBlock rows = PixelBlock::uninitialized({band.width, above + height});
    image.read({0, band.y + first - above, band.width, above + height}, rows.pixels.get(), band.width);

    PngPiece& coded = plan.pieces[piece];
    coded.opaque = isOpaque({rows.row(above), rows.row(above + height)});
    coded.withAlpha = withAlpha || !coded.opaque;
    const Bytes filtered = filteredRows({band.width, height}, rows.row(above),
                                        above > 0 ? rows.row(0) : nullptr, coded.withAlpha);
    coded.adler = adlerOf(filtered);
    coded.length = filtered.size();
    Bytes& deflated = plan.coded[piece];
    deflated.clear();
    appendDeflated(deflated, filtered);
    coded.deflated = deflated;
}

/// Codes those pieces of the plans that `isWanted`. `withAlpha` is set when one of them is not opaque.
template <class Wanted>
void codePieces(const Image& image, std::vector<Plan>& plans, std::atomic<bool>& withAlpha,
                const Wanted& isWanted) {
    std::vector<std::pair<Plan*, std::size_t>> work;
    for (Plan& plan : plans)
        for (std::size_t i = 0; i < plan.pieces.size(); ++i)
            if (isWanted(plan.pieces[i]))
                work.emplace_back(&plan, i);
    parallelFor(static_cast<int>(work.size()), [&](int i) {
        const auto [plan, piece] = work[static_cast<std::size_t>(i)];
        code(image, *plan, piece, withAlpha);
        if (!plan->pieces[piece].opaque)
            withAlpha = true;
    });
}

/// The plan's pieces as a chunk, kept beside a stored band.
PngBandPointer carriedOut(const Plan& plan, const Image& image) {
    auto band = std::make_shared<PngBand>();
    std::vector<ByteView> parts;
    parts.reserve(plan.pieces.size());
    for (const PngPiece& piece : plan.pieces)
        parts.push_back(piece.deflated);
    Bytes chunk;
    png::appendChunk(chunk, "IDAT", parts);
    band->chunk = std::make_shared<const Bytes>(std::move(chunk));
    band->pieces = plan.pieces;
    std::size_t position = png::kDataOffset;
    for (PngPiece& piece : band->pieces) {
        piece.deflated = ByteView(*band->chunk).subspan(position, piece.deflated.size());
        position += piece.deflated.size();
    }
    if (const std::shared_ptr<const Band> stored = image.storedBand(plan.band)) {
        band->tiles = stored->tiles();
        stored->encoded().set(band);
    }
    return band;
}

bool isOpaqueWhole(const std::vector<PngPiece>& pieces) {
    return std::ranges::all_of(pieces,
                               [](const PngPiece& piece) { return !piece.isCoded() || piece.opaque; });
}

} // namespace

CodedPngBands codedPngBands(const Image& image) {
    std::vector<PngBandPointer> bands(static_cast<std::size_t>(image.bandCount()));
    std::vector<Plan> plans;
    std::atomic<bool> withAlpha = false;
    for (int index = 0; index < image.bandCount(); ++index) {
        const std::shared_ptr<const Band> stored = image.storedBand(index);
        PngBandPointer kept = stored ? stored->encoded().get<PngBand>() : nullptr;
        if (!kept)
            plans.push_back(planFor(image, index));
        if (!isOpaqueWhole(kept ? kept->pieces : plans.back().pieces))
            withAlpha = true;
        bands[static_cast<std::size_t>(index)] = std::move(kept);
    }
    codePieces(image, plans, withAlpha, [](const PngPiece& piece) { return !piece.isCoded(); });

    // Whether the picture is opaque is known when all of it has been looked at. What was coded on another
    // guess is coded again: rarely anything.
    const auto isMistaken = [&](const PngPiece& piece) { return piece.withAlpha != withAlpha; };
    for (int index = 0; index < image.bandCount(); ++index) {
        const PngBandPointer& kept = bands[static_cast<std::size_t>(index)];
        if (!kept || std::ranges::none_of(kept->pieces, isMistaken))
            continue;
        plans.push_back({.band = index, .before = kept, .pieces = kept->pieces, .coded = {}});
        plans.back().coded.resize(kept->pieces.size());
    }
    codePieces(image, plans, withAlpha, isMistaken);

    parallelFor(static_cast<int>(plans.size()), [&](int i) {
        const Plan& plan = plans[static_cast<std::size_t>(i)];
        bands[static_cast<std::size_t>(plan.band)] = carriedOut(plan, image);
    });
    CodedPngBands result{.withAlpha = withAlpha, .chunks = {}, .adler = kAdlerOfNothing};
    for (const PngBandPointer& band : bands) {
        result.chunks.push_back(band->chunk);
        for (const PngPiece& piece : band->pieces)
            result.adler = combinedAdler(result.adler, piece.adler, piece.length);
    }
    return result;
}

} // namespace complexion
