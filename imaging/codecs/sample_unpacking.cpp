// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/sample_unpacking.h"

#include "imaging/base/rgba64.h"

#include <cmath>
#include <cstring>

namespace complexion {

namespace {

template <class Number>
Number load(const std::uint8_t* row, std::size_t index) {
    Number number;
    std::memcpy(&number, row + index * sizeof(Number), sizeof(Number));
    return number;
}

std::uint32_t load24(const std::uint8_t* row, std::size_t index) {
    const std::uint8_t* bytes = row + 3 * index;
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16;
}

std::uint64_t loadBits(const std::uint8_t* row, std::size_t index, int bits) {
    std::size_t bit = index * static_cast<std::size_t>(bits);
    std::uint64_t value = 0;
    for (int left = bits; left > 0;) {
        const int inByte = 8 - static_cast<int>(bit % 8);
        const int taken = left < inByte ? left : inByte;
        const unsigned part = (row[bit / 8] >> (inByte - taken)) & ((1U << taken) - 1);
        value = value << taken | part;
        bit += static_cast<std::size_t>(taken);
        left -= taken;
    }
    return value;
}

std::uint64_t loadInteger(const std::uint8_t* row, std::size_t index, int bits) {
    switch (bits) {
    case 8:
        return row[index];
    case 16:
        return load<std::uint16_t>(row, index);
    case 24:
        return load24(row, index);
    case 32:
        return load<std::uint32_t>(row, index);
    case 64:
        return load<std::uint64_t>(row, index);
    default:
        return loadBits(row, index, bits);
    }
}

/// IEEE 754 binary16, and the 24-bit format of Adobe's TIFF Technical Note 3: 7-bit exponent, 16-bit
/// fraction.
double smallFloat(std::uint32_t bits, int exponentBits, int fractionBits) {
    const int bias = (1 << (exponentBits - 1)) - 1;
    const auto exponent = static_cast<int>(bits >> fractionBits & ((1U << exponentBits) - 1));
    const std::uint32_t fraction = bits & ((1U << fractionBits) - 1);
    const bool negative = (bits >> (exponentBits + fractionBits) & 1) != 0;
    double magnitude = 0;
    if (exponent == (1 << exponentBits) - 1)
        magnitude = fraction == 0 ? INFINITY : NAN;
    else if (exponent == 0)
        magnitude = std::ldexp(fraction, 1 - bias - fractionBits);
    else
        magnitude = std::ldexp(fraction + (1U << fractionBits), exponent - bias - fractionBits);
    return negative ? -magnitude : magnitude;
}

double loadFloat(const std::uint8_t* row, std::size_t index, int bits) {
    switch (bits) {
    case 16:
        return smallFloat(load<std::uint16_t>(row, index), 5, 10);
    case 24:
        return smallFloat(load24(row, index), 7, 16);
    case 32:
        return load<float>(row, index);
    default:
        return load<double>(row, index);
    }
}

std::uint8_t fromUnitRange(double value) {
    if (!(value > 0)) // NaN too
        return 0;
    return value >= 1 ? 255 : static_cast<std::uint8_t>(std::lround(value * 255));
}

template <class Sample>
void forEach(SampleUnpacker::Stride stride, std::uint8_t* out, Sample sample) {
    for (std::size_t i = 0; i < stride.count; ++i)
        out[i * stride.outStep] = sample(stride.first + i * stride.step);
}

} // namespace

std::optional<SampleUnpacker> SampleUnpacker::create(int bits, SampleKind kind) {
    const bool wholeBytes = bits == 16 || bits == 24 || bits == 32 || bits == 64;
    const bool known = kind == SampleKind::Float ? wholeBytes : (bits >= 1 && bits <= 32) || bits == 64;
    return known ? std::optional(SampleUnpacker(bits, kind)) : std::nullopt;
}

void SampleUnpacker::unpack(const std::uint8_t* row, Stride stride, std::uint8_t* out) const {
    if (m_kind == SampleKind::Float) {
        forEach(stride, out, [&](std::size_t i) { return fromUnitRange(loadFloat(row, i, m_bits)); });
        return;
    }
    // The lowest signed number is the darkest: flipping the sign bit makes it 0.
    const std::uint64_t sign = m_kind == SampleKind::Signed ? std::uint64_t{1} << (m_bits - 1) : 0;
    if (m_bits == 8) {
        forEach(stride, out, [&](std::size_t i) { return static_cast<std::uint8_t>(row[i] ^ sign); });
    } else if (m_bits == 16) {
        forEach(stride, out, [&](std::size_t i) {
            return roundedTo8(load<std::uint16_t>(row, i) ^ static_cast<std::uint32_t>(sign));
        });
    } else if (m_bits > 16) {
        // Only the 16 most significant bits matter.
        forEach(stride, out, [&](std::size_t i) {
            return roundedTo8(
                static_cast<std::uint32_t>((loadInteger(row, i, m_bits) ^ sign) >> (m_bits - 16)));
        });
    } else {
        const std::uint32_t highest = (1U << m_bits) - 1;
        forEach(stride, out, [&](std::size_t i) {
            const auto value = static_cast<std::uint32_t>(loadBits(row, i, m_bits) ^ sign);
            return static_cast<std::uint8_t>((value * 255 + highest / 2) / highest);
        });
    }
}

void SampleUnpacker::unpackIndices(const std::uint8_t* row, Stride stride, std::uint16_t* out) const {
    for (std::size_t i = 0; i < stride.count; ++i)
        out[i * stride.outStep] =
            static_cast<std::uint16_t>(loadInteger(row, stride.first + i * stride.step, m_bits));
}

} // namespace complexion
