// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_coefficients.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <span>

namespace complexion::jpeg {

namespace {

constexpr int kSamplePrecision = 8;
/// Largest DC magnitude in a valid picture; up to it all decoders agree.
constexpr int kMaxDc = 2047;
static_assert(DCTSIZE2 == kBlockArea && sizeof(CoefficientBlock) == sizeof(JBLOCK));

std::optional<ColorSpace> colorSpaceOf(const jpeg_decompress_struct& info) {
    const bool isGrey = info.num_components == 1;
    if (!isGrey && info.num_components != 3)
        return std::nullopt;
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
        return isGrey ? std::optional(ColorSpace::Grey) : std::nullopt;
    case JCS_YCbCr:
        return isGrey ? std::nullopt : std::optional(ColorSpace::YCbCr);
    case JCS_RGB:
        return isGrey ? std::nullopt : std::optional(ColorSpace::Rgb);
    default:
        return std::nullopt;
    }
}

/// Whether a progressive file has all bits of each block's first coefficients. Decoders estimate missing ones
/// (block smoothing).
bool isComplete(const jpeg_decompress_struct& info) {
    constexpr int kSmoothedCoefficients = 10;
    if (!info.progressive_mode || info.coef_bits == nullptr)
        return true;
    for (int component = 0; component < info.num_components; ++component)
        if (!std::all_of(info.coef_bits[component], info.coef_bits[component] + kSmoothedCoefficients,
                         [](int missingBits) { return missingBits == 0; }))
            return false;
    return true;
}

/// Dequantises `block` with the table `steps`. False if a product exceeds the range of the format.
bool dequantise(const JCOEF* block, const std::uint16_t* steps, CoefficientBlock& out) {
    int largest = 0;
    for (std::size_t i = 0; i < kBlockArea; ++i) {
        const int product = block[i] * steps[i];
        out[i] = static_cast<std::int16_t>(product);
        largest = std::max(largest, std::abs(product));
    }
    if (largest <= kMaxAc)
        return true;
    const int dc = block[0] * steps[0];
    const auto isSmall = [&](std::size_t i) { return std::abs(block[i] * steps[i]) <= kMaxAc; };
    for (std::size_t i = 1; i < kBlockArea; ++i)
        if (!isSmall(i))
            return false;
    return std::abs(dc) <= kMaxDc;
}

} // namespace

Result<std::unique_ptr<const Coefficients>> Coefficients::read(ByteView file) {
    std::unique_ptr<Coefficients> coefficients(new Coefficients(file));
    Decompressor& decompressor = coefficients->m_decompressor;
    if (!decompressor.readHeader())
        return decompressor.error();
    const Result<Layout> layout = coefficients->readLayout();
    if (!layout)
        return layout.error();
    coefficients->m_layout = *layout;
    if (!decompressor.readCoefficients())
        return decompressor.error();
    if (decompressor.hasWarned())
        return Error{"JPEG: the file is damaged"};
    if (!isComplete(decompressor.info()))
        return Error{"JPEG: the progressive file lacks refinements"};
    for (int i = 0; i < decompressor.info().num_components; ++i)
        if (decompressor.info().comp_info[i].quant_table == nullptr)
            return Error{"JPEG: a component lacks its quantisation table"};
    coefficients->findRows();
    return std::unique_ptr<const Coefficients>(std::move(coefficients));
}

Result<Layout> Coefficients::readLayout() {
    const jpeg_decompress_struct& info = m_decompressor.info();
    const std::optional<ColorSpace> colorSpace = colorSpaceOf(info);
    if (!colorSpace || info.data_precision != kSamplePrecision)
        return Error{"JPEG: not 8-bit grey, YCbCr or RGB"};
    std::vector<SamplingFactors> factors;
    for (const jpeg_component_info& component :
         std::span(info.comp_info, static_cast<std::size_t>(info.num_components)))
        factors.push_back({component.h_samp_factor, component.v_samp_factor});
    return makeLayout(m_decompressor.size(), *colorSpace, factors);
}

void Coefficients::findRows() {
    for (std::size_t i = 0; i < m_layout.components.size(); ++i) {
        const int rows = m_layout.mcusDown * m_layout.components[i].blocksDown;
        std::vector<JBLOCKROW>& found = m_rows.emplace_back();
        for (int row = 0; row < rows; ++row)
            found.push_back(m_decompressor.coefficientRow(static_cast<int>(i), row));
    }
}

bool Coefficients::readRow(int index, McuRow& row) const {
    for (std::size_t i = 0; i < m_layout.components.size(); ++i) {
        const Component& component = m_layout.components[i];
        const std::uint16_t* const steps = m_decompressor.info().comp_info[i].quant_table->quantval;
        const int width = m_layout.blocksPerMcuRow(component);
        auto out = row[i].begin();
        for (int down = 0; down < component.blocksDown; ++down, out += width) {
            const int blockRow = index * component.blocksDown + down;
            const JBLOCKROW blocks = m_rows[i][static_cast<std::size_t>(blockRow)];
            const int count = blockRow < component.blocksPerColumn() ? component.blocksPerRow() : 0;
            for (int block = 0; block < count; ++block)
                if (!dequantise(blocks[block], steps, out[block]))
                    return false;
            std::fill(out + count, out + width, CoefficientBlock{});
        }
    }
    return fitsRestartInterval(m_layout, row, index);
}

Result<McuRow> decodeMcuRow(ByteView header, ByteView row) {
    Bytes file(header.begin(), header.end());
    file.insert(file.end(), row.begin(), row.end());
    file.insert(file.end(), {0xFF, JPEG_EOI});
    const auto coefficients = Coefficients::read(file);
    if (!coefficients)
        return coefficients.error();
    McuRow blocks = emptyMcuRow((*coefficients)->layout());
    if (!(*coefficients)->readRow(0, blocks))
        return Error{"JPEG: a coefficient is out of range"};
    return blocks;
}

} // namespace complexion::jpeg
