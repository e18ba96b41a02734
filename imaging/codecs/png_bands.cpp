// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/png_bands.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/changed_rows.h"
#include "imaging/codecs/deflate.h"
#include "imaging/codecs/png_filter.h"
#include "imaging/containers/png_chunks.h"

#include <atomic>
#include <utility>

namespace complexion::png {

namespace {

/// Minimum number of pixels in a piece. A piece is the smallest unit that is encoded again on its own; its
/// new deflate block costs up to 100 bytes.
constexpr std::int64_t kMinPieceArea = 16'384;
constexpr int kMinPieceRows = 8;

int rowsPerPiece(int width) {
    int rows = kMinPieceRows;
    while (rows < Tile::kHeight && std::int64_t{width} * rows < kMinPieceArea)
        rows *= 2;
    return rows;
}

/// The independently compressed data of some rows, and what assembling the file needs.
struct Piece {
    bool opaque = false;
    bool withAlpha = false;   // encoded as RGBA
    std::uint32_t adler = 0;  // of the uncompressed data
    std::uint64_t length = 0; // of the uncompressed data
    ByteView deflated;
    bool isEncoded() const { return deflated.data() != nullptr; }
};

/// A band's IDAT chunk, the pieces in it and (for a stored band) the tiles they were encoded from.
struct EncodedBand : Memo::Value {
    TileList tiles;
    std::vector<Piece> pieces;
    std::shared_ptr<const Bytes> chunk;
};
using EncodedBandPointer = std::shared_ptr<const EncodedBand>;

/// A band whose chunk has to be assembled.
struct Plan {
    int band = 0;
    EncodedBandPointer before;  // supplies the pieces that are reused
    std::vector<Piece> pieces;  // some not encoded yet
    std::vector<Bytes> encoded; // bytes of the pieces encoded now
};

Plan planFor(const Image& image, int index) {
    const PixelRect rect = image.bandRect(index);
    const int rows = rowsPerPiece(rect.width);
    const auto count = static_cast<std::size_t>((rect.height + rows - 1) / rows);
    Plan plan{.band = index, .before = nullptr, .pieces = std::vector<Piece>(count), .encoded = {}};
    plan.encoded.resize(count);
    const std::shared_ptr<const Band> band = image.storedBand(index);
    const EncodedBandPointer before = band ? band->encoded().getOutdated<EncodedBand>() : nullptr;
    if (!before || before->pieces.size() != count)
        return plan;
    plan.before = before;
    const std::vector<bool> changed = changedRows(*band, before->tiles, rows);
    for (std::size_t i = 0; i < count; ++i) {
        // The filter of a piece's first row uses the row above.
        const bool isSame = !changed[i] && (i == 0 || !changed[i - 1]);
        if (isSame)
            plan.pieces[i] = before->pieces[i];
    }
    return plan;
}

void encodePiece(const Image& image, Plan& plan, std::size_t piece, bool withAlpha) {
    const PixelRect band = image.bandRect(plan.band);
    const int pieceRows = rowsPerPiece(band.width);
    const int first = static_cast<int>(piece) * pieceRows;
    const int above = first > 0 ? 1 : 0; // row of the piece above, for the filters; bands are independent
    const int height = std::min(pieceRows, band.height - first);
    const PixelBlock rows = PixelBlock::uninitialized({band.width, above + height});
    image.read({0, band.y + first - above, band.width, above + height}, rows.pixels.get(), band.width);

    Piece& encoded = plan.pieces[piece];
    encoded.opaque = isOpaque({rows.row(above), rows.row(above + height)});
    encoded.withAlpha = withAlpha || !encoded.opaque;
    const Bytes filtered = filteredRows({band.width, height}, rows.row(above),
                                        above > 0 ? rows.row(0) : nullptr, encoded.withAlpha);
    encoded.adler = adler32Of(filtered);
    encoded.length = filtered.size();
    Bytes& deflated = plan.encoded[piece];
    deflated.clear();
    appendDeflated(deflated, filtered);
    encoded.deflated = deflated;
}

/// Encodes the pieces that `isWanted` selects. Sets `withAlpha` if one of them is not opaque.
template <class Wanted>
void encodePieces(const Image& image, std::vector<Plan>& plans, std::atomic<bool>& withAlpha,
                  const Wanted& isWanted) {
    std::vector<std::pair<Plan*, std::size_t>> work;
    for (Plan& plan : plans)
        for (std::size_t i = 0; i < plan.pieces.size(); ++i)
            if (isWanted(plan.pieces[i]))
                work.emplace_back(&plan, i);
    parallelFor(static_cast<int>(work.size()), [&](int i) {
        const auto [plan, piece] = work[static_cast<std::size_t>(i)];
        encodePiece(image, *plan, piece, withAlpha);
        if (!plan->pieces[piece].opaque)
            withAlpha = true;
    });
}

/// Assembles the band's chunk and caches it beside a stored band.
EncodedBandPointer assembled(const Plan& plan, const Image& image) {
    auto band = std::make_shared<EncodedBand>();
    std::vector<ByteView> parts;
    parts.reserve(plan.pieces.size());
    for (const Piece& piece : plan.pieces)
        parts.push_back(piece.deflated);
    Bytes chunk;
    appendChunk(chunk, "IDAT", parts);
    band->chunk = std::make_shared<const Bytes>(std::move(chunk));
    band->pieces = plan.pieces;
    std::size_t position = kDataOffset;
    for (Piece& piece : band->pieces) {
        piece.deflated = ByteView(*band->chunk).subspan(position, piece.deflated.size());
        position += piece.deflated.size();
    }
    if (const std::shared_ptr<const Band> stored = image.storedBand(plan.band)) {
        band->tiles = stored->tiles();
        stored->encoded().set(band);
    }
    return band;
}

bool areOpaque(const std::vector<Piece>& pieces) {
    return std::ranges::all_of(pieces, [](const Piece& piece) { return !piece.isEncoded() || piece.opaque; });
}

} // namespace

EncodedBands encodeBands(const Image& image) {
    std::vector<EncodedBandPointer> bands(static_cast<std::size_t>(image.bandCount()));
    std::vector<Plan> plans;
    std::atomic<bool> withAlpha = false;
    for (int index = 0; index < image.bandCount(); ++index) {
        const std::shared_ptr<const Band> stored = image.storedBand(index);
        EncodedBandPointer cached = stored ? stored->encoded().get<EncodedBand>() : nullptr;
        if (!cached)
            plans.push_back(planFor(image, index));
        if (!areOpaque(cached ? cached->pieces : plans.back().pieces))
            withAlpha = true;
        bands[static_cast<std::size_t>(index)] = std::move(cached);
    }
    encodePieces(image, plans, withAlpha, [](const Piece& piece) { return !piece.isEncoded(); });

    // Only now is it known whether the whole picture is opaque. Pieces encoded on the wrong assumption, which
    // are rare, are encoded again.
    const auto hasWrongFormat = [&](const Piece& piece) { return piece.withAlpha != withAlpha; };
    for (int index = 0; index < image.bandCount(); ++index) {
        const EncodedBandPointer& cached = bands[static_cast<std::size_t>(index)];
        if (!cached || std::ranges::none_of(cached->pieces, hasWrongFormat))
            continue;
        plans.push_back({.band = index, .before = cached, .pieces = cached->pieces, .encoded = {}});
        plans.back().encoded.resize(cached->pieces.size());
    }
    encodePieces(image, plans, withAlpha, hasWrongFormat);

    parallelFor(static_cast<int>(plans.size()), [&](int i) {
        const Plan& plan = plans[static_cast<std::size_t>(i)];
        bands[static_cast<std::size_t>(plan.band)] = assembled(plan, image);
    });
    EncodedBands result{.withAlpha = withAlpha, .chunks = {}, .adler = kInitialAdler32};
    for (const EncodedBandPointer& band : bands) {
        result.chunks.push_back(band->chunk);
        for (const Piece& piece : band->pieces)
            result.adler = combinedAdler32(result.adler, piece.adler, piece.length);
    }
    return result;
}

} // namespace complexion::png
