// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_coefficients.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <span>

namespace complexion {

namespace {

constexpr int kBitsOfSample = 8;
/// A scan's MCU holds no more (T.81, B.2.3).
constexpr std::size_t kMaxBlocksOfMcu = 10;
/// DC coefficients are that small in a picture of any sense, and then all decoders agree on it.
constexpr int kMaxDc = 2047;
static_assert(DCTSIZE2 == kJpegBlockArea && sizeof(JpegBlock) == sizeof(JBLOCK));

int dividedUp(int value, int divisor) {
    return (value + divisor - 1) / divisor;
}

std::optional<JpegColors> colorsOf(const jpeg_decompress_struct& info) {
    const bool isGrey = info.num_components == 1;
    if (!isGrey && info.num_components != 3)
        return std::nullopt;
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
        return isGrey ? std::optional(JpegColors::Grey) : std::nullopt;
    case JCS_YCbCr:
        return isGrey ? std::nullopt : std::optional(JpegColors::YCbCr);
    case JCS_RGB:
        return isGrey ? std::nullopt : std::optional(JpegColors::Rgb);
    default:
        return std::nullopt;
    }
}

/// What divides all sampling factors of one direction divides nothing that can be seen.
int commonFactor(std::span<const jpeg_component_info> components, int jpeg_component_info::* factor) {
    int common = 0;
    for (const jpeg_component_info& component : components)
        common = std::gcd(common, component.*factor);
    return common;
}

/// Decoders fill in what an unfinished progressive file lacks of a block's first coefficients.
bool isFinished(const jpeg_decompress_struct& info) {
    constexpr int kGuessedCoefficients = 10;
    if (!info.progressive_mode || info.coef_bits == nullptr)
        return true;
    for (int component = 0; component < info.num_components; ++component)
        if (!std::all_of(info.coef_bits[component], info.coef_bits[component] + kGuessedCoefficients,
                         [](int missingBits) { return missingBits == 0; }))
            return false;
    return true;
}

/// `block` times `steps`; false when a product leaves the range of the format.
bool dequantise(const JCOEF* block, const std::uint16_t* steps, JpegBlock& out) {
    int largest = 0;
    for (std::size_t i = 0; i < kJpegBlockArea; ++i) {
        const int product = block[i] * steps[i];
        out[i] = static_cast<std::int16_t>(product);
        largest = std::max(largest, std::abs(product));
    }
    if (largest <= kMaxJpegAc)
        return true;
    const int dc = block[0] * steps[0];
    const auto isSmall = [&](std::size_t i) { return std::abs(block[i] * steps[i]) <= kMaxJpegAc; };
    for (std::size_t i = 1; i < kJpegBlockArea; ++i)
        if (!isSmall(i))
            return false;
    return std::abs(dc) <= kMaxDc;
}

} // namespace

Result<std::unique_ptr<const JpegCoefficients>> JpegCoefficients::read(ByteView file) {
    std::unique_ptr<JpegCoefficients> coefficients(new JpegCoefficients(file));
    JpegDecompressor& decompressor = coefficients->m_decompressor;
    if (!decompressor.readHeader())
        return decompressor.error();
    const Result<JpegLayout> layout = coefficients->readLayout();
    if (!layout)
        return layout.error();
    coefficients->m_layout = *layout;
    if (!decompressor.readCoefficients())
        return decompressor.error();
    if (decompressor.hasWarned())
        return Error{"JPEG: the file is damaged"};
    if (!isFinished(decompressor.info()))
        return Error{"JPEG: the progressive file lacks refinements"};
    for (int i = 0; i < decompressor.info().num_components; ++i)
        if (decompressor.info().comp_info[i].quant_table == nullptr)
            return Error{"JPEG: a component lacks its quantisation table"};
    coefficients->findRows();
    return std::unique_ptr<const JpegCoefficients>(std::move(coefficients));
}

Result<JpegLayout> JpegCoefficients::readLayout() {
    const jpeg_decompress_struct& info = m_decompressor.info();
    const std::optional<JpegColors> colors = colorsOf(info);
    if (!colors || info.data_precision != kBitsOfSample)
        return Error{"JPEG: not 8-bit grey, YCbCr or RGB"};
    const std::span components(info.comp_info, static_cast<std::size_t>(info.num_components));
    const int acrossFactor = commonFactor(components, &jpeg_component_info::h_samp_factor);
    const int downFactor = commonFactor(components, &jpeg_component_info::v_samp_factor);
    const int mostAcross = info.max_h_samp_factor / acrossFactor;
    const int mostDown = info.max_v_samp_factor / downFactor;
    JpegLayout layout{.size = m_decompressor.size(),
                      .colors = *colors,
                      .components = {},
                      .mcu = {mostAcross * DCTSIZE, mostDown * DCTSIZE}};
    layout.mcusAcross = dividedUp(layout.size.width, layout.mcu.width);
    layout.mcusDown = dividedUp(layout.size.height, layout.mcu.height);
    std::size_t blocks = 0;
    for (const jpeg_component_info& read : components) {
        JpegComponent component;
        component.blocksAcross = read.h_samp_factor / acrossFactor;
        component.blocksDown = read.v_samp_factor / downFactor;
        if (mostAcross % component.blocksAcross != 0 || mostDown % component.blocksDown != 0)
            return Error{"JPEG: sampling ratios that are not whole"};
        component.pixelsAcross = mostAcross / component.blocksAcross;
        component.pixelsDown = mostDown / component.blocksDown;
        component.samples = {dividedUp(layout.size.width, component.pixelsAcross),
                             dividedUp(layout.size.height, component.pixelsDown)};
        layout.components.push_back(component);
        blocks += component.blocksOfMcu();
    }
    if (blocks > kMaxBlocksOfMcu)
        return Error{"JPEG: too many blocks for one scan"};
    return layout;
}

void JpegCoefficients::findRows() {
    for (std::size_t i = 0; i < m_layout.components.size(); ++i) {
        const int rows = m_layout.mcusDown * m_layout.components[i].blocksDown;
        std::vector<JBLOCKROW>& found = m_rows.emplace_back();
        for (int row = 0; row < rows; ++row)
            found.push_back(m_decompressor.coefficientRow(static_cast<int>(i), row));
    }
}

bool JpegCoefficients::readRow(int index, JpegMcuRow& row) const {
    for (std::size_t i = 0; i < m_layout.components.size(); ++i) {
        const JpegComponent& component = m_layout.components[i];
        const std::uint16_t* const steps = m_decompressor.info().comp_info[i].quant_table->quantval;
        const int perRow = m_layout.blocksInRow(component);
        auto out = row[i].begin();
        for (int down = 0; down < component.blocksDown; ++down, out += perRow) {
            const int blockRow = index * component.blocksDown + down;
            const JBLOCKROW blocks = m_rows[i][static_cast<std::size_t>(blockRow)];
            const int count = blockRow < component.blocksOfColumn() ? component.blocksOfRow() : 0;
            for (int block = 0; block < count; ++block)
                if (!dequantise(blocks[block], steps, out[block]))
                    return false;
            std::fill(out + count, out + perRow, JpegBlock{});
        }
    }
    return fitsRestartInterval(m_layout, row, index);
}

Result<JpegMcuRow> decodedMcuRow(ByteView header, ByteView row) {
    Bytes file(header.begin(), header.end());
    file.insert(file.end(), row.begin(), row.end());
    file.insert(file.end(), {0xFF, JPEG_EOI});
    const auto coefficients = JpegCoefficients::read(file);
    if (!coefficients)
        return coefficients.error();
    JpegMcuRow blocks = emptyMcuRow((*coefficients)->layout());
    if (!(*coefficients)->readRow(0, blocks))
        return Error{"JPEG: a coefficient is out of range"};
    return blocks;
}

} // namespace complexion
