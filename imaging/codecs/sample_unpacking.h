// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace complexion {

/// The number type of a row's samples. Samples of 8, 16, 24, 32 and 64 bits are in native byte order; others
/// are a bit stream, most significant bit first.
enum class SampleKind { Unsigned, Signed, Float };

/// Converts samples of any type to 8 bits. Integers are scaled from their full range, floating-point numbers
/// from 0 to 1.
class SampleUnpacker {
public:
    /// Nothing for a combination that does not exist, such as 5-bit floating point.
    static std::optional<SampleUnpacker> create(int bits, SampleKind kind);

    /// Which samples of a row to read, and where to write them.
    struct Stride {
        std::size_t first = 0;
        std::size_t step = 1;
        std::size_t count = 0;
        std::size_t outStep = 1;
    };

    /// out[i * outStep] = sample[first + i * step], scaled to 8 bits.
    void unpack(const std::uint8_t* row, Stride stride, std::uint8_t* out) const;

    /// The same without scaling, for palette indices and 16-bit samples. More than 16 bits are truncated to
    /// the low 16.
    void unpackIndices(const std::uint8_t* row, Stride stride, std::uint16_t* out) const;

    /// Whether unpacking is a plain copy.
    bool isCopy() const { return m_bits == 8 && m_kind == SampleKind::Unsigned; }

private:
    SampleUnpacker(int bits, SampleKind kind) : m_bits(bits), m_kind(kind) {}

    int m_bits;
    SampleKind m_kind;
};

} // namespace complexion
