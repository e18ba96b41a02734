// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_edit.h"

#include "imaging/base/parallel.h"
#include "imaging/codecs/jpeg_color_changes.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <set>
#include <utility>

namespace complexion::jpeg {

namespace {

/// Chroma is solved for squares with this many MCUs on a side, so that an edit costs only the squares it
/// touches.
constexpr int kSquareSide = 8;
/// Distance, in MCUs, over which the changes of MCUs depend on one another.
constexpr int kDependencyRadius = 2;

constexpr std::size_t kAllBlocks = std::numeric_limits<std::size_t>::max();
constexpr std::uint32_t kColorBits = RGBA32(255, 255, 255, 0).color;

bool haveSameColors(std::span<const RGBA32> one, std::span<const RGBA32> other) {
    return std::ranges::equal(one, other,
                              [](RGBA32 a, RGBA32 b) { return ((a.color ^ b.color) & kColorBits) == 0; });
}

std::vector<RGBA32> readPixels(const Image& image, PixelRect rect) {
    std::vector<RGBA32> pixels(static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height));
    image.read(rect, pixels.data(), rect.width);
    return pixels;
}

/// Adds the indices of the MCUs in which the two images differ within `rect`.
void addDifferingMcus(const Layout& layout, const Image& one, const Image& other, PixelRect rect,
                      std::set<int>& mcus) {
    const std::vector<RGBA32> before = readPixels(one, rect);
    const std::vector<RGBA32> after = readPixels(other, rect);
    for (int y = rect.y; y < rect.bottom(); ++y)
        for (int x = rect.x; x < rect.right();) {
            const int next = std::min(rect.right(), (x / layout.mcu.width + 1) * layout.mcu.width);
            const auto i = static_cast<std::size_t>(y - rect.y) * static_cast<std::size_t>(rect.width) +
                           static_cast<std::size_t>(x - rect.x);
            const auto count = static_cast<std::size_t>(next - x);
            if (!haveSameColors({before.data() + i, count}, {after.data() + i, count}))
                mcus.insert(y / layout.mcu.height * layout.mcusAcross + x / layout.mcu.width);
            x = next;
        }
}

McuDifferences::value_type differenceOf(const SampleBlock& before, const SampleBlock& after) {
    McuDifferences::value_type differences{};
    for (std::size_t i = 0; i < differences.size(); ++i)
        differences[i] = static_cast<std::int16_t>(after[i] - before[i]);
    return differences;
}

/// Calls `visit(component, block)` for each block of an MCU in scan order; `block` is its index in the
/// component's part of the MCU row.
template <class Visit>
void forEachBlock(const Layout& layout, int column, const Visit& visit) {
    for (std::size_t c = 0; c < layout.components.size(); ++c) {
        const Component& component = layout.components[c];
        for (int down = 0; down < component.blocksDown; ++down)
            for (int across = 0; across < component.blocksAcross; ++across)
                visit(c, blockIndex(layout, component, column, down, across));
    }
}

} // namespace

Edit::Edit(const TranscodedFile& jpeg, const Image& upright, Orientation orientation)
    : m_jpeg(jpeg),
      m_orientation(orientation),
      m_source(turnedForStorage(upright, orientation)),
      m_current(upright) {}

const std::shared_ptr<const Bytes>& Edit::row(int index) const {
    const auto edited = m_rows.find(index);
    return edited == m_rows.end() ? m_jpeg.rows[static_cast<std::size_t>(index)] : edited->second;
}

PixelRect Edit::pixelsOf(int mcu) const {
    const Layout& layout = m_jpeg.layout;
    return PixelRect{mcu % layout.mcusAcross * layout.mcu.width, mcu / layout.mcusAcross * layout.mcu.height,
                     layout.mcu.width, layout.mcu.height}
        .intersected({0, 0, layout.size.width, layout.size.height});
}

std::vector<int> Edit::differingMcus(const Image& upright) const {
    const Image before = turnedForStorage(m_current, m_orientation);
    const Image after = turnedForStorage(upright, m_orientation);
    std::set<int> mcus;
    for (int band = 0; band < upright.bandCount(); ++band) {
        const TileList& ones = m_current.bands()[static_cast<std::size_t>(band)]->tiles();
        const TileList& others = upright.bands()[static_cast<std::size_t>(band)]->tiles();
        for (std::size_t column = 0; column < ones.size(); ++column) {
            if (ones[column] == others[column])
                continue;
            const PixelSize size = ones[column]->block().size;
            const PixelRect place{static_cast<int>(column) * Tile::kWidth, band * Tile::kHeight, size.width,
                                  size.height};
            addDifferingMcus(m_jpeg.layout, before, after,
                             storedRect(place, upright.pixelSize(), m_orientation), mcus);
        }
    }
    return {mcus.begin(), mcus.end()};
}

/// The bounding boxes of the touched MCUs in each square whose changes depend on one of `mcus`.
std::vector<PixelRect> Edit::squaresAround(const std::vector<int>& mcus, const Versions& versions) const {
    const Layout& layout = m_jpeg.layout;
    std::set<std::pair<int, int>> squares;
    const auto firstOf = [](int place) { return std::max(0, place - kDependencyRadius) / kSquareSide; };
    const auto lastOf = [](int place, int count) {
        return std::min(count - 1, place + kDependencyRadius) / kSquareSide;
    };
    for (const int mcu : mcus) {
        const int row = mcu / layout.mcusAcross;
        const int column = mcu % layout.mcusAcross;
        for (int y = firstOf(row); y <= lastOf(row, layout.mcusDown); ++y)
            for (int x = firstOf(column); x <= lastOf(column, layout.mcusAcross); ++x)
                squares.emplace(y, x);
    }
    std::vector<PixelRect> parts;
    for (const auto& [y, x] : squares) {
        const PixelRect square{x * kSquareSide, y * kSquareSide, kSquareSide, kSquareSide};
        const PixelRect part =
            touchedBounds(versions, square.intersected({0, 0, layout.mcusAcross, layout.mcusDown}));
        if (!part.isEmpty())
            parts.push_back(part);
    }
    return parts;
}

bool Edit::isTouched(const Image& stored, int mcu) const {
    const PixelRect rect = pixelsOf(mcu);
    return !haveSameColors(readPixels(m_source, rect), readPixels(stored, rect));
}

std::optional<Edit::McuRows> Edit::readRows(const std::vector<int>& rows) const {
    std::vector<Result<McuRow>> read(rows.size(), McuRow());
    parallelFor(static_cast<int>(rows.size()), [&](int i) {
        read[static_cast<std::size_t>(i)] = decodeMcuRow(m_jpeg, rows[static_cast<std::size_t>(i)]);
    });
    McuRows result;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!read[i])
            return std::nullopt;
        result.emplace(rows[i], std::move(*read[i]));
    }
    return result;
}

/// Whether the luminance can make up for what the chroma gets wrong.
bool Edit::refinesLuminance() const {
    const Layout& layout = m_jpeg.layout;
    return layout.colorSpace == ColorSpace::YCbCr && layout.components[kLuminance].isFullResolution();
}

/// Sorted, with the touched MCUs around them: upsampling blends the chroma across the border.
std::vector<int> Edit::withTouchedNeighbors(const std::vector<int>& mcus, const TouchedMcus& touched) const {
    const Layout& layout = m_jpeg.layout;
    std::set<int> all;
    for (const int mcu : mcus) {
        const int row = mcu / layout.mcusAcross;
        const int column = mcu % layout.mcusAcross;
        for (int y = std::max(0, row - 1); y <= std::min(layout.mcusDown - 1, row + 1); ++y)
            for (int x = std::max(0, column - 1); x <= std::min(layout.mcusAcross - 1, column + 1); ++x)
                if (const int neighbor = y * layout.mcusAcross + x; touched.contains(neighbor))
                    all.insert(neighbor);
    }
    return {all.begin(), all.end()};
}

/// Fits the blocks of `range` whose changes are not what they were fitted to.
void Edit::fit(const McuRows& rows, TouchedMcus& touched, const McuChanges& changes, BlockRange range) const {
    std::vector<McuChanges::const_iterator> mcus;
    for (auto change = changes.begin(); change != changes.end(); ++change)
        mcus.push_back(change);
    std::vector<std::shared_ptr<const TouchedMcu>> fitted(mcus.size());
    parallelFor(static_cast<int>(mcus.size()), [&](int i) {
        const int mcu = mcus[static_cast<std::size_t>(i)]->first;
        const McuChange& change = mcus[static_cast<std::size_t>(i)]->second;
        const McuRow& row = rows.at(mcu / m_jpeg.layout.mcusAcross);
        auto after = std::make_shared<TouchedMcu>(*touched.at(mcu));
        if (after->blocks.empty()) {
            forEachBlock(m_jpeg.layout, mcu % m_jpeg.layout.mcusAcross,
                         [&](std::size_t c, std::size_t block) { after->blocks.push_back(row[c][block]); });
            after->fitted.resize(after->blocks.size());
            after->differences.resize(after->blocks.size());
        }
        std::size_t n = 0;
        forEachBlock(m_jpeg.layout, mcu % m_jpeg.layout.mcusAcross, [&](std::size_t c, std::size_t block) {
            const std::size_t at = n++;
            if (at < range.first || at >= range.last || change[at] == after->fitted[at])
                return;
            after->fitted[at] = change[at];
            after->blocks[at] = fitBlock(row[c][block], change[at].samples, change[at].pinned);
            after->differences[at] =
                differenceOf(decodedSamples(row[c][block]), decodedSamples(after->blocks[at]));
        });
        fitted[static_cast<std::size_t>(i)] = std::move(after);
    });
    for (std::size_t i = 0; i < mcus.size(); ++i)
        touched[mcus[i]->first] = std::move(fitted[i]);
}

/// Fits the luminance of `mcus`, which are in `squares`, to their chroma.
void Edit::refineLuminance(const McuRows& rows, TouchedMcus& touched, const Versions& versions,
                           const std::vector<PixelRect>& squares, const std::vector<int>& mcus) const {
    std::vector<McuChanges> changes(squares.size());
    parallelFor(static_cast<int>(squares.size()), [&](int i) {
        const auto n = static_cast<std::size_t>(i);
        changes[n] = luminanceChanges(m_jpeg.layout, versions, squares[n], differencesIn(touched));
    });
    McuChanges toFit;
    for (McuChanges& changesOfSquare : changes)
        for (auto& [mcu, change] : changesOfSquare)
            if (std::ranges::binary_search(mcus, mcu))
                toFit.emplace(mcu, std::move(change));
    fit(rows, touched, toFit, {0, m_jpeg.layout.components[kLuminance].blocksPerMcu()});
}

DifferencesOf Edit::differencesIn(const TouchedMcus& touched) const {
    return [&](int row, int column) -> const McuDifferences& {
        return touched.at(row * m_jpeg.layout.mcusAcross + column)->differences;
    };
}

/// The pixels that decide whether the MCUs of `square` can be represented.
PixelRect Edit::regionOf(PixelRect square) const {
    const Layout& layout = m_jpeg.layout;
    // Of the squares around it, too: the luminance depends on their chroma.
    constexpr int kRadius = kSquareSide + kDependencyRadius;
    const int left = std::max(0, square.x - kRadius);
    const int top = std::max(0, square.y - kRadius);
    const int right = std::min(layout.mcusAcross - 1, square.right() - 1 + kRadius);
    const int bottom = std::min(layout.mcusDown - 1, square.bottom() - 1 + kRadius);
    return pixelsOf(top * layout.mcusAcross + left).united(pixelsOf(bottom * layout.mcusAcross + right));
}

/// Whether the MCU that made the last update fail is unchanged in this image, so that fitting would fail
/// again.
bool Edit::isStillRefused(const Image& upright) {
    if (!m_refusal)
        return false;
    const Image now = Image::fromBands(upright.pixelSize(), upright.bands());
    const PixelRect differing = m_refusal->image.difference(now);
    const bool isSame =
        differing.isEmpty() ||
        storedRect(differing, now.pixelSize(), m_orientation).intersected(m_refusal->region).isEmpty();
    if (isSame)
        m_refusal->image = now;
    else
        m_refusal.reset();
    return isSame;
}

/// A square whose pixels the fitted blocks would change too much; nothing if there is none.
std::optional<PixelRect> Edit::findUnfaithful(const std::vector<PixelRect>& squares, const Versions& versions,
                                              const TouchedMcus& touched) const {
    std::atomic<int> unfaithful = -1;
    parallelFor(static_cast<int>(squares.size()), [&](int i) {
        if (!isFaithful(m_jpeg.layout, versions, squares[static_cast<std::size_t>(i)],
                        differencesIn(touched)))
            unfaithful = i;
    });
    return unfaithful < 0 ? std::nullopt
                          : std::optional(squares[static_cast<std::size_t>(unfaithful.load())]);
}

/// The changes of the MCUs of `squares` that are not what they were. Sets them as wanted in `touched`.
/// Nothing if a grey picture would need colour.
std::optional<McuChanges> Edit::changesToFit(TouchedMcus& touched, const Versions& versions,
                                             const std::vector<PixelRect>& squares) const {
    std::vector<std::optional<McuChanges>> changes(squares.size());
    parallelFor(static_cast<int>(squares.size()), [&](int i) {
        const auto n = static_cast<std::size_t>(i);
        changes[n] = sampleChanges(m_jpeg.layout, versions, squares[n]);
    });
    McuChanges toFit;
    for (auto& changesOfSquare : changes) {
        if (!changesOfSquare)
            return std::nullopt;
        for (auto& [mcu, change] : *changesOfSquare) {
            std::shared_ptr<const TouchedMcu>& place = touched.at(mcu);
            if (place && place->wanted == change)
                continue;
            auto next = place ? std::make_shared<TouchedMcu>(*place) : std::make_shared<TouchedMcu>();
            next->wanted = change;
            place = std::move(next);
            toFit.emplace(mcu, std::move(change));
        }
    }
    return toFit;
}

std::optional<Error> Edit::update(const Image& upright) {
    if (isStillRefused(upright))
        return m_refusal->error;
    const Layout& layout = m_jpeg.layout;
    const Image stored = turnedForStorage(upright, m_orientation);
    const std::vector<int> differing = differingMcus(upright);
    TouchedMcus touched = m_touched;
    std::set<int> changedRows;
    for (const int mcu : differing) {
        changedRows.insert(mcu / layout.mcusAcross);
        if (isTouched(stored, mcu))
            touched.try_emplace(mcu);
        else
            touched.erase(mcu);
    }

    const Versions versions = {.before = m_source, .after = stored, .isTouched = [&](int row, int column) {
                                   return touched.contains(row * layout.mcusAcross + column);
                               }};
    const std::optional<McuChanges> toFit =
        changesToFit(touched, versions, squaresAround(differing, versions));
    if (!toFit)
        return Error{"JPEG: a grey picture cannot hold colours"};
    std::vector<int> fitted;
    for (const auto& [mcu, change] : *toFit)
        fitted.push_back(mcu);
    if (refinesLuminance())
        fitted = withTouchedNeighbors(fitted, touched);
    for (const int mcu : fitted)
        changedRows.insert(mcu / layout.mcusAcross);
    std::optional<McuRows> rows = readRows({changedRows.begin(), changedRows.end()});
    if (!rows)
        return Error{"JPEG: a row that was coded cannot be read"};
    const std::vector<PixelRect> squares = squaresAround(fitted, versions);
    if (refinesLuminance()) {
        fit(*rows, touched, *toFit, {layout.components[kLuminance].blocksPerMcu(), kAllBlocks});
        refineLuminance(*rows, touched, versions, squares, fitted);
    } else {
        fit(*rows, touched, *toFit, {0, kAllBlocks});
    }
    if (const std::optional<PixelRect> square = findUnfaithful(squares, versions, touched)) {
        m_refusal = {.image = Image::fromBands(upright.pixelSize(), upright.bands()),
                     .region = regionOf(*square),
                     .error = Error{"JPEG: the picture's chroma is too coarse for the edit"}};
        return m_refusal->error;
    }
    std::optional<CodedRows> coded = encodeRows(std::move(*rows), touched);
    if (!coded)
        return Error{"JPEG: the edited picture is out of range"};
    m_rows.swap(*coded);
    m_touched.swap(touched);
    m_current = Image::fromBands(upright.pixelSize(), upright.bands());
    return std::nullopt;
}

std::optional<Edit::CodedRows> Edit::encodeRows(McuRows rows, const TouchedMcus& touched) const {
    const Layout& layout = m_jpeg.layout;
    CodedRows coded = m_rows;
    std::vector<std::pair<int, McuRow*>> edited;
    for (auto& entry : rows) {
        const int index = entry.first;
        McuRow& row = entry.second;
        const auto first = touched.lower_bound(index * layout.mcusAcross);
        const auto last = touched.lower_bound((index + 1) * layout.mcusAcross);
        if (first == last)
            coded.erase(index);
        else
            edited.emplace_back(index, &row);
        for (auto mcu = first; mcu != last; ++mcu) {
            auto block = mcu->second->blocks.begin();
            forEachBlock(layout, mcu->first % layout.mcusAcross,
                         [&](std::size_t c, std::size_t place) { row[c][place] = *block++; });
        }
    }
    std::vector<Result<Bytes>> bytes(edited.size(), Bytes());
    parallelFor(static_cast<int>(edited.size()), [&](int i) {
        const auto& [index, row] = edited[static_cast<std::size_t>(i)];
        bytes[static_cast<std::size_t>(i)] = fitsRestartInterval(layout, *row, index)
                                                 ? encodeMcuRow(m_jpeg, index, *row)
                                                 : Result<Bytes>(Error{"out of range"});
    });
    for (std::size_t i = 0; i < edited.size(); ++i) {
        if (!bytes[i])
            return std::nullopt;
        coded[edited[i].first] = std::make_shared<const Bytes>(std::move(*bytes[i]));
    }
    return coded;
}

} // namespace complexion::jpeg
