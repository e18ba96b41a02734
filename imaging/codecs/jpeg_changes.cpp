// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_changes.h"

#include "imaging/codecs/jpeg_color_changes.h"
#include "imaging/codecs/jpeg_upsampling.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace complexion::jpeg {

namespace {

/// Largest difference between the components of a pixel that counts as grey: what a repair's rounding can
/// cause.
constexpr int kMaxTint = 2;
/// Largest change of an unpainted pixel, in levels before rounding.
constexpr float kMaxUnpaintedChange = 15;
/// Largest mean error of painted pixels, in levels.
constexpr double kMaxPaintedError = 12;
/// Target for the change of an unpainted pixel, in levels. Leaves room for rounding below
/// `kMaxUnpaintedChange`.
constexpr float kMaxSpill = 10;
/// Rounds in which pixels beyond the target get more weight before their samples are frozen.
constexpr int kReweightings = 4;
constexpr float kReweightFactor = 8;

int tintOf(RGBA32 pixel) {
    const auto [lowest, highest] = std::minmax({pixel.red(), pixel.green(), pixel.blue()});
    return highest - lowest;
}

PixelRect grown(PixelRect mcus, int by, const Layout& layout) {
    return PixelRect{mcus.x - by, mcus.y - by, mcus.width + 2 * by, mcus.height + 2 * by}.intersected(
        {0, 0, layout.mcusAcross, layout.mcusDown});
}

/// A window of MCUs: its pixels, and the changes of its components' samples.
class Window {
public:
    Window(const Layout& layout, const Versions& versions, PixelRect mcus)
        : m_layout(layout), m_mcus(mcus), m_around(grown(mcus, 1, layout)) {
        for (const Component& component : layout.components)
            m_upsamplings.emplace_back(layout, component, mcus);
        m_pixels = m_upsamplings.front().pixels();
        for (int y = m_around.y; y < m_around.bottom(); ++y)
            for (int x = m_around.x; x < m_around.right(); ++x)
                m_isTouched.push_back(versions.isTouched(y, x) ? 1 : 0);
        m_values.resize(layout.components.size(), std::vector<float>(pixelCount()));
        m_changes.resize(layout.components.size());
        m_colors.resize(pixelCount());
        m_isChanged.resize(pixelCount());
    }

    /// False if a grey picture would need colour.
    bool readPixels(const Versions& versions) {
        std::vector<RGBA32> before(pixelCount());
        std::vector<RGBA32> after(pixelCount());
        versions.before.read(m_pixels, before.data(), m_pixels.width);
        versions.after.read(m_pixels, after.data(), m_pixels.width);
        const ColorWeights& weights = m_layout.colorSpace == ColorSpace::Rgb ? kIdentity : kComponentsOfRgb;
        for (std::size_t i = 0; i < before.size(); ++i) {
            const RGBA32 one = before[i];
            const RGBA32 other = after[i];
            const ColorChange change = {static_cast<float>(other.red() - one.red()),
                                        static_cast<float>(other.green() - one.green()),
                                        static_cast<float>(other.blue() - one.blue())};
            m_colors[i] = change;
            m_isChanged[i] = change[0] != 0 || change[1] != 0 || change[2] != 0;
            if (m_layout.colorSpace == ColorSpace::Grey && m_isChanged[i] && tintOf(other) > kMaxTint)
                return false;
            for (std::size_t c = 0; c < m_values.size(); ++c)
                m_values[c][i] =
                    weights[c][0] * change[0] + weights[c][1] * change[1] + weights[c][2] * change[2];
        }
        return true;
    }

    /// Computes the changes of all samples.
    void solve() {
        const bool allWhole = std::ranges::all_of(
            m_layout.components, [](const Component& component) { return component.isFullResolution(); });
        for (std::size_t c = 0; c < m_values.size(); ++c)
            if (m_layout.components[c].isFullResolution())
                m_changes[c] = m_values[c];
        if (allWhole) {
            roundColors();
            return;
        }
        std::vector<float> weights = touchedPixels();
        std::vector<std::vector<char>> isFree;
        isFree.reserve(m_values.size());
        for (std::size_t c = 0; c < m_values.size(); ++c)
            isFree.push_back(freeSamples(c));
        for (int round = 0;; ++round) {
            solve(weights, isFree);
            const std::vector<char> spilled = findSpilled(weights);
            if (std::ranges::none_of(spilled, [](char isSpilled) { return isSpilled != 0; }))
                return;
            if (round < kReweightings)
                for (std::size_t i = 0; i < weights.size(); ++i)
                    weights[i] *= spilled[i] ? kReweightFactor : 1;
            else
                freeze(spilled, isFree);
        }
    }

    /// Replaces the luminance by what brings each pixel closest to its painted colour with the chroma as it
    /// is.
    void solveLuminance() {
        const std::vector<float> blue = m_upsamplings[kBlueChroma].up(m_changes[kBlueChroma]);
        const std::vector<float> red = m_upsamplings[kRedChroma].up(m_changes[kRedChroma]);
        for (std::size_t i = 0; i < m_colors.size(); ++i)
            m_changes[kLuminance][i] = nearestLuminance(m_colors[i], blue[i], red[i]);
    }

    /// Sets known changes instead of computing them with `solve`.
    void setChanges(const DifferencesOf& differencesOf) {
        for (std::size_t c = 0; c < m_changes.size(); ++c)
            m_changes[c].assign(static_cast<std::size_t>(m_upsamplings[c].samples().width) *
                                    static_cast<std::size_t>(m_upsamplings[c].samples().height),
                                0);
        for (int row = m_mcus.y; row < m_mcus.bottom(); ++row)
            for (int column = m_mcus.x; column < m_mcus.right(); ++column) {
                if (!isTouched(row, column))
                    continue;
                auto differences = differencesOf(row, column).begin();
                forEachBlock(row, column,
                             [&](std::size_t c, int y, int x) { setBlock(c, y, x, *differences++); });
            }
    }

    /// Whether the pixels of `mcus` come close enough to their targets.
    bool isFaithful(PixelRect mcus) const {
        const ColorWeights& rgb = rgbOfComponents();
        std::vector<std::vector<float>> spread(m_values.size());
        for (std::size_t c = 0; c < m_values.size(); ++c)
            spread[c] = m_upsamplings[c].up(m_changes[c]);
        double sum = 0;
        std::int64_t count = 0;
        for (std::size_t i = 0; i < m_isChanged.size(); ++i) {
            const int width = m_pixels.width;
            const int column = (m_pixels.x + static_cast<int>(i) % width) / m_layout.mcu.width;
            const int row = (m_pixels.y + static_cast<int>(i) / width) / m_layout.mcu.height;
            if (PixelRect{column, row, 1, 1}.intersected(mcus).isEmpty() || !isTouched(row, column))
                continue;
            for (const ColorChange& color : rgb) {
                float error = 0; // a grey picture uses the first row of weights only
                for (std::size_t c = 0; c < spread.size(); ++c)
                    error += color[c] * (spread[c][i] - m_values[c][i]);
                if (m_isChanged[i])
                    sum += std::abs(error);
                else if (std::abs(error) > kMaxUnpaintedChange)
                    return false;
            }
            count += m_isChanged[i] ? 1 : 0;
        }
        return sum <= kMaxPaintedError * 3 * static_cast<double>(count);
    }

    /// The changes of the first `components` components of the touched MCUs of `mcus`, by MCU index.
    McuChanges changesOf(PixelRect mcus, std::size_t components) const {
        McuChanges changes;
        for (int row = mcus.y; row < mcus.bottom(); ++row)
            for (int column = mcus.x; column < mcus.right(); ++column)
                if (isTouched(row, column))
                    forEachBlock(row, column, [&](std::size_t c, int y, int x) {
                        if (c < components)
                            changes[row * m_layout.mcusAcross + column].push_back(blockAt(c, y, x));
                    });
        return changes;
    }

    bool isTouched(int row, int column) const {
        const PixelRect place = PixelRect{column, row, 1, 1}.intersected(m_around);
        return !place.isEmpty() && m_isTouched[static_cast<std::size_t>((row - m_around.y) * m_around.width +
                                                                        column - m_around.x)] != 0;
    }

private:
    /// Makes the changes of all components whole.
    void roundColors() {
        if (m_layout.colorSpace != ColorSpace::YCbCr)
            return;
        for (std::size_t i = 0; i < m_colors.size(); ++i) {
            const ComponentChange whole = nearestWholeChange(m_colors[i]);
            for (std::size_t c = 0; c < whole.size(); ++c)
                m_changes[c][i] = whole[c];
        }
    }

    /// Calls `visit(component, row, column)` for each block of an MCU in scan order, with the position of the
    /// block's first sample.
    template <class Visit>
    void forEachBlock(int row, int column, const Visit& visit) const {
        for (std::size_t c = 0; c < m_changes.size(); ++c) {
            const Component& component = m_layout.components[c];
            for (int down = 0; down < component.blocksDown; ++down)
                for (int across = 0; across < component.blocksAcross; ++across)
                    visit(c, (row * component.blocksDown + down) * kBlockSide,
                          (column * component.blocksAcross + across) * kBlockSide);
        }
    }

    const ColorWeights& rgbOfComponents() const {
        return m_layout.colorSpace == ColorSpace::YCbCr ? kRgbOfComponents : kIdentity;
    }

    std::size_t pixelCount() const {
        return static_cast<std::size_t>(m_pixels.width) * static_cast<std::size_t>(m_pixels.height);
    }

    /// 1 for the pixels of touched MCUs, 0 for all others.
    std::vector<float> touchedPixels() const {
        std::vector<float> weights;
        weights.reserve(pixelCount());
        for (int y = m_pixels.y; y < m_pixels.bottom(); ++y)
            for (int x = m_pixels.x; x < m_pixels.right(); ++x)
                weights.push_back(isTouched(y / m_layout.mcu.height, x / m_layout.mcu.width) ? 1.0F : 0.0F);
        return weights;
    }

    /// Whether a sample, with all samples that upsampling blends it with, is in a touched MCU.
    bool isFreeSample(const Component& component, int row, int column) const {
        const int byRow = component.blendsDown() ? 1 : 0;
        const int byColumn = component.blendsAcross() ? 1 : 0;
        const PixelSize size = component.samples;
        for (int y = std::max(0, row - byRow); y <= std::min(size.height - 1, row + byRow); ++y)
            for (int x = std::max(0, column - byColumn); x <= std::min(size.width - 1, column + byColumn);
                 ++x)
                if (!isTouched(y / (component.blocksDown * kBlockSide),
                               x / (component.blocksAcross * kBlockSide)))
                    return false;
        return true;
    }

    std::vector<char> freeSamples(std::size_t c) const {
        const PixelRect rect = m_upsamplings[c].samples();
        std::vector<char> isFree;
        for (int y = rect.y; y < rect.bottom(); ++y)
            for (int x = rect.x; x < rect.right(); ++x)
                isFree.push_back(isFreeSample(m_layout.components[c], y, x) ? 1 : 0);
        return isFree;
    }

    void solve(const std::vector<float>& weights, const std::vector<std::vector<char>>& isFree) {
        for (std::size_t c = 0; c < m_values.size(); ++c)
            if (!m_layout.components[c].isFullResolution())
                m_changes[c] = m_upsamplings[c].nearestSamples(m_values[c], weights, isFree[c]);
    }

    /// Unpainted pixels of touched MCUs that would change too much.
    std::vector<char> findSpilled(const std::vector<float>& weights) const {
        std::vector<std::vector<float>> spread(m_values.size());
        for (std::size_t c = 0; c < m_values.size(); ++c)
            if (!m_layout.components[c].isFullResolution())
                spread[c] = m_upsamplings[c].up(m_changes[c]);
        const ColorWeights& rgb = rgbOfComponents();
        std::vector<char> spilled(weights.size());
        for (std::size_t i = 0; i < spilled.size(); ++i) {
            if (m_isChanged[i] || weights[i] == 0)
                continue;
            for (const ColorChange& color : rgb) {
                float moved = 0;
                for (std::size_t c = 0; c < spread.size(); ++c)
                    moved += spread[c].empty() ? 0 : color[c] * spread[c][i];
                if (std::abs(moved) > kMaxSpill)
                    spilled[i] = 1;
            }
        }
        return spilled;
    }

    void freeze(const std::vector<char>& spilled, std::vector<std::vector<char>>& isFree) const {
        for (std::size_t c = 0; c < m_values.size(); ++c) {
            const std::vector<char> parts = m_upsamplings[c].contributingSamples(spilled);
            for (std::size_t i = 0; i < parts.size(); ++i)
                if (parts[i])
                    isFree[c][i] = 0;
        }
    }

    /// The change of the block whose first sample is at `row`, `column`.
    BlockChange blockAt(std::size_t c, int row, int column) const {
        const Component& component = m_layout.components[c];
        const PixelRect rect = m_upsamplings[c].samples();
        BlockChange change;
        for (int y = row; y < std::min(row + kBlockSide, rect.bottom()); ++y)
            for (int x = column; x < std::min(column + kBlockSide, rect.right()); ++x) {
                const auto i = static_cast<std::size_t>((y - row) * kBlockSide + x - column);
                change.samples[i] =
                    m_changes[c][static_cast<std::size_t>((y - rect.y) * rect.width + x - rect.x)];
                change.pinned[i] = !component.isFullResolution() && !isFreeSample(component, y, x);
            }
        return change;
    }

    void setBlock(std::size_t c, int row, int column, const McuDifferences::value_type& differences) {
        const PixelRect rect = m_upsamplings[c].samples();
        for (int y = row; y < std::min(row + kBlockSide, rect.bottom()); ++y)
            for (int x = column; x < std::min(column + kBlockSide, rect.right()); ++x)
                m_changes[c][static_cast<std::size_t>((y - rect.y) * rect.width + x - rect.x)] =
                    differences[static_cast<std::size_t>((y - row) * kBlockSide + x - column)];
    }

    const Layout& m_layout;
    PixelRect m_mcus;
    PixelRect m_around;            // the window and the MCUs around it
    std::vector<char> m_isTouched; // for each MCU of `m_around`
    std::vector<Upsampling> m_upsamplings;
    PixelRect m_pixels;
    std::vector<ColorChange> m_colors;         // wanted changes of red, green and blue, per pixel
    std::vector<std::vector<float>> m_values;  // the same of each component
    std::vector<std::vector<float>> m_changes; // changes of each component, per sample
    std::vector<char> m_isChanged;
};

} // namespace

std::optional<McuChanges> sampleChanges(const Layout& layout, const Versions& versions, PixelRect mcus) {
    // One more MCU on each side: their changes affect the samples at the border.
    Window window(layout, versions, grown(mcus, 1, layout));
    if (!window.readPixels(versions))
        return std::nullopt;
    window.solve();
    return window.changesOf(mcus, layout.components.size());
}

bool isFaithful(const Layout& layout, const Versions& versions, PixelRect mcus,
                const DifferencesOf& differencesOf) {
    Window window(layout, versions, grown(mcus, 1, layout));
    if (!window.readPixels(versions))
        return false;
    window.setChanges(differencesOf);
    return window.isFaithful(mcus);
}

McuChanges luminanceChanges(const Layout& layout, const Versions& versions, PixelRect mcus,
                            const DifferencesOf& differencesOf) {
    Window window(layout, versions, grown(mcus, 1, layout));
    if (!window.readPixels(versions))
        return {};
    window.setChanges(differencesOf);
    window.solveLuminance();
    return window.changesOf(mcus, 1);
}

PixelRect touchedBounds(const Versions& versions, PixelRect mcus) {
    PixelRect bounds;
    for (int row = mcus.y; row < mcus.bottom(); ++row)
        for (int column = mcus.x; column < mcus.right(); ++column)
            if (versions.isTouched(row, column))
                bounds = bounds.united({column, row, 1, 1});
    return bounds;
}

} // namespace complexion::jpeg
