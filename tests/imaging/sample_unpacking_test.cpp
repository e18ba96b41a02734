// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/sample_unpacking.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <span>
#include <vector>

namespace complexion {

namespace {

using Samples = std::vector<std::uint8_t>;

/// The bytes of numbers in native order.
template <class Number>
Samples bytesOfNumbers(const std::vector<Number>& numbers) {
    Samples bytes(numbers.size() * sizeof(Number));
    std::memcpy(bytes.data(), numbers.data(), bytes.size());
    return bytes;
}

Samples unpacked(int bits, SampleKind kind, const Samples& row, std::size_t count) {
    Samples out(count);
    SampleUnpacker::create(bits, kind)->unpack(row.data(), {.count = count}, out.data());
    return out;
}

TEST(SampleUnpacking, ExistsForTheTypesOfSamples) {
    for (int bits = -1; bits <= 80; ++bits) {
        const bool isInteger = (bits >= 1 && bits <= 32) || bits == 64;
        EXPECT_EQ(SampleUnpacker::create(bits, SampleKind::Unsigned).has_value(), isInteger) << bits;
        EXPECT_EQ(SampleUnpacker::create(bits, SampleKind::Signed).has_value(), isInteger) << bits;
        EXPECT_EQ(SampleUnpacker::create(bits, SampleKind::Float).has_value(),
                  bits == 16 || bits == 24 || bits == 32 || bits == 64)
            << bits;
    }
}

TEST(SampleUnpacking, ScalesUnsignedNumbersFromTheirRange) {
    EXPECT_EQ(unpacked(1, SampleKind::Unsigned, {0b10100000}, 3), (Samples{255, 0, 255}));
    EXPECT_EQ(unpacked(4, SampleKind::Unsigned, {0x0f, 0x80}, 3), (Samples{0, 255, 136}));
    EXPECT_EQ(unpacked(5, SampleKind::Unsigned, {0b00001'111, 0b11'000000}, 2), (Samples{8, 255}));
    EXPECT_EQ(unpacked(8, SampleKind::Unsigned, {0, 77, 255}, 3), (Samples{0, 77, 255}));
    EXPECT_EQ(unpacked(12, SampleKind::Unsigned, {0xff, 0xf8, 0x00}, 2), (Samples{255, 128}));
    EXPECT_EQ(unpacked(16, SampleKind::Unsigned, bytesOfNumbers<std::uint16_t>({0, 77 * 257, 65535}), 3),
              (Samples{0, 77, 255}));
    EXPECT_EQ(unpacked(24, SampleKind::Unsigned, {0, 0, 0, 1, 2, 77, 255, 255, 255}, 3),
              (Samples{0, 77, 255}));
    EXPECT_EQ(unpacked(32, SampleKind::Unsigned,
                       bytesOfNumbers<std::uint32_t>({0, 77U * 0x01010101, 0xffffffff}), 3),
              (Samples{0, 77, 255}));
    EXPECT_EQ(unpacked(64, SampleKind::Unsigned,
                       bytesOfNumbers<std::uint64_t>({0, 77 * 0x0101010101010101U, UINT64_MAX}), 3),
              (Samples{0, 77, 255}));
    EXPECT_EQ(unpacked(20, SampleKind::Unsigned, {0xff, 0xff, 0xf0, 0x00, 0x00}, 2), (Samples{255, 0}));
}

TEST(SampleUnpacking, TakesTheLowestSignedNumberAsBlack) {
    EXPECT_EQ(unpacked(8, SampleKind::Signed, {0x80, 0x00, 0x7f}, 3), (Samples{0, 128, 255}));
    EXPECT_EQ(unpacked(16, SampleKind::Signed, bytesOfNumbers<std::int16_t>({-32768, 0, 32767}), 3),
              (Samples{0, 128, 255}));
    EXPECT_EQ(unpacked(32, SampleKind::Signed,
                       bytesOfNumbers<std::int32_t>({std::numeric_limits<std::int32_t>::min(), 0,
                                                     std::numeric_limits<std::int32_t>::max()}),
                       3),
              (Samples{0, 128, 255}));
    EXPECT_EQ(unpacked(4, SampleKind::Signed, {0x80, 0x70}, 3), (Samples{0, 136, 255}));
}

TEST(SampleUnpacking, ScalesFloatingPointNumbersFromTheUnitRange) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(unpacked(32, SampleKind::Float, bytesOfNumbers<float>({-1, 0, 0.2F, 1, 2}), 5),
              (Samples{0, 0, 51, 255, 255}));
    EXPECT_EQ(
        unpacked(64, SampleKind::Float, bytesOfNumbers<double>({-kInfinity, 0, 0.2, 1, kInfinity, kNaN}), 6),
        (Samples{0, 0, 51, 255, 255, 0}));
    // binary16: 0.25, 1, -1, the largest subnormal number (6.1e-5), infinity, NaN
    EXPECT_EQ(unpacked(16, SampleKind::Float,
                       bytesOfNumbers<std::uint16_t>({0x3400, 0x3c00, 0xbc00, 0x03ff, 0x7c00, 0x7c01}), 6),
              (Samples{64, 255, 0, 0, 255, 0}));
    // 7-bit exponent, 16-bit fraction: 0.25, 0.75, -0.75, infinity, NaN; the lowest byte first
    EXPECT_EQ(unpacked(24, SampleKind::Float,
                       {0, 0, 0x3d, 0, 0x80, 0x3e, 0, 0x80, 0xbe, 0, 0, 0x7f, 1, 0, 0x7f}, 5),
              (Samples{64, 191, 0, 255, 0}));
}

TEST(SampleUnpacking, ReadsAndWritesInSteps) {
    const Samples row = {10, 20, 30, 40, 50, 60};
    Samples out(5, 1);
    SampleUnpacker::create(8, SampleKind::Unsigned)
        ->unpack(row.data(), {.first = 1, .step = 2, .count = 2, .outStep = 3}, out.data());
    EXPECT_EQ(out, (Samples{20, 1, 1, 40, 1}));
}

TEST(SampleUnpacking, DoesNotScaleIndices) {
    const auto indices = [](int bits, const Samples& row, std::size_t count) {
        std::vector<std::uint16_t> out(count);
        SampleUnpacker::create(bits, SampleKind::Unsigned)
            ->unpackIndices(row.data(), {.count = count}, out.data());
        return out;
    };
    using Indices = std::vector<std::uint16_t>;
    EXPECT_EQ(indices(2, {0b11'01'00'10}, 4), (Indices{3, 1, 0, 2}));
    EXPECT_EQ(indices(8, {0, 200}, 2), (Indices{0, 200}));
    EXPECT_EQ(indices(16, bytesOfNumbers<std::uint16_t>({3, 60000}), 2), (Indices{3, 60000}));
    EXPECT_EQ(indices(24, {0x01, 0x02, 0x03}, 1), (Indices{0x0201})) << "the low 16 bits";
}

} // namespace

} // namespace complexion
