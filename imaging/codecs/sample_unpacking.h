// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace complexion {

/// How the numbers of a row of samples are stored: numbers of 8, 16, 24, 32 and 64 bits in the machine's byte
/// order, others as a stream of bits, highest bit first.
enum class SampleKind { Unsigned, Signed, Float };

/// Brings samples of any kind to 8 bits: the whole range of an integer, 0 to 1 of a floating-point number.
class SampleUnpacker {
public:
    /// Nothing for a kind that does not exist (a 5-bit floating-point number, say).
    static std::optional<SampleUnpacker> create(int bits, SampleKind kind);

    /// Which samples of a row to take, and where to put them.
    struct Walk {
        std::size_t first = 0;
        std::size_t step = 1;
        std::size_t count = 0;
        std::size_t outStep = 1;
    };

    /// out[i * outStep] = sample[first + i * step], in 8 bits.
    void unpack(const std::uint8_t* row, Walk walk, std::uint8_t* out) const;

    /// The same without scaling, for numbers that are no amounts; those above 16 bits keep the lowest ones.
    void unpackNumbers(const std::uint8_t* row, Walk walk, std::uint16_t* out) const;

    /// Whether unpacking copies.
    bool isPlain() const { return m_bits == 8 && m_kind == SampleKind::Unsigned; }

private:
    SampleUnpacker(int bits, SampleKind kind) : m_bits(bits), m_kind(kind) {}

    int m_bits;
    SampleKind m_kind;
};

} // namespace complexion
