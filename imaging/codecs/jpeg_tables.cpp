// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_tables.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace complexion::jpeg {

namespace {

constexpr int kMaxCodeLength = 16; // in bits (ITU-T T.81 B.2.4.2)
constexpr std::size_t kDcSymbolCount = 12;
constexpr std::size_t kAcSymbolCount = 162;
/// Log2 weight of an empty code; each bit halves it. A 16-bit code weighs 2^8, so that all unseen symbols
/// together weigh little.
constexpr int kWeightBits = 24;
constexpr std::int64_t kUnseenWeight = 1;

constexpr std::array<std::uint8_t, kAcSymbolCount> makeAcSymbols() {
    std::array<std::uint8_t, kAcSymbolCount> symbols = {0x00, 0xF0};
    std::size_t count = 2;
    for (int run = 0; run < 16; ++run)
        for (int size = 1; size <= 10; ++size)
            symbols[count++] = static_cast<std::uint8_t>(run << 4 | size);
    return symbols;
}

constexpr std::array<std::uint8_t, kDcSymbolCount> kDcSymbols = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
constexpr std::array<std::uint8_t, kAcSymbolCount> kAcSymbols = makeAcSymbols();

struct Leaf {
    int symbol; // kReserved for the code of all ones, which no symbol may have
    std::int64_t weight;
    int length = 0;
};
constexpr int kReserved = -1;

/// Sets the leaves' code lengths by Huffman's algorithm.
void setHuffmanLengths(std::vector<Leaf>& leaves) {
    struct Node {
        std::int64_t weight;
        std::vector<std::size_t> leaves;
    };
    std::vector<Node> nodes;
    nodes.reserve(leaves.size());
    for (std::size_t i = 0; i < leaves.size(); ++i)
        nodes.push_back({leaves[i].weight, {i}});
    const auto heavier = [](const Node& a, const Node& b) { return a.weight > b.weight; };
    std::ranges::make_heap(nodes, heavier);
    while (nodes.size() > 1) {
        std::ranges::pop_heap(nodes, heavier);
        const Node lightest = std::move(nodes.back());
        nodes.pop_back();
        std::ranges::pop_heap(nodes, heavier);
        Node& merged = nodes.back();
        merged.weight += lightest.weight;
        merged.leaves.insert(merged.leaves.end(), lightest.leaves.begin(), lightest.leaves.end());
        for (const std::size_t leaf : merged.leaves)
            ++leaves[leaf].length;
        std::ranges::push_heap(nodes, heavier);
    }
}

/// Limits code lengths to 16 bits (ITU-T T.81 K.2, figure K.3). `counts[n]` is the number of codes of n bits.
void limitLengths(std::vector<int>& counts) {
    for (std::size_t length = counts.size() - 1; length > kMaxCodeLength; --length)
        while (counts[length] > 0) {
            // Replace a pair of the longest codes by its prefix, and split a shorter code in two.
            std::size_t shorter = length - 2;
            while (counts[shorter] == 0)
                --shorter;
            counts[length] -= 2;
            counts[length - 1] += 1;
            counts[shorter + 1] += 2;
            counts[shorter] -= 1;
        }
}

std::vector<Leaf> weightedLeaves(const HuffmanCode& code, std::span<const std::uint8_t> needed) {
    std::vector<Leaf> leaves;
    std::array<bool, 256> seen = {};
    std::size_t next = 0;
    for (std::size_t length = 1; length <= kMaxCodeLength; ++length)
        for (int i = 0; i < code.lengthCounts[length] && next < code.symbols.size(); ++i) {
            const std::uint8_t symbol = code.symbols[next++];
            seen[symbol] = true;
            leaves.push_back({symbol, std::int64_t{1} << (kWeightBits - static_cast<int>(length))});
        }
    for (const std::uint8_t symbol : needed)
        if (!seen[symbol])
            leaves.push_back({symbol, kUnseenWeight});
    leaves.push_back({kReserved, 0});
    return leaves;
}

} // namespace

std::span<const std::uint8_t> dcSymbols() {
    return kDcSymbols;
}

std::span<const std::uint8_t> acSymbols() {
    return kAcSymbols;
}

HuffmanCode withAllSymbols(const HuffmanCode& code, std::span<const std::uint8_t> needed) {
    std::vector<Leaf> leaves = weightedLeaves(code, needed);
    setHuffmanLengths(leaves);
    // Short codes first, the reserved code last.
    std::ranges::stable_sort(leaves, [](const Leaf& a, const Leaf& b) {
        return a.length != b.length ? a.length < b.length : (a.symbol != kReserved && b.symbol == kReserved);
    });
    std::vector<int> counts(
        std::max<std::size_t>(kMaxCodeLength, static_cast<std::size_t>(leaves.back().length)) + 1);
    for (const Leaf& leaf : leaves)
        ++counts[static_cast<std::size_t>(leaf.length)];
    limitLengths(counts);
    // Drop the reserved code.
    std::size_t longest = kMaxCodeLength;
    while (counts[longest] == 0)
        --longest;
    --counts[longest];

    HuffmanCode result;
    for (std::size_t length = 1; length <= kMaxCodeLength; ++length)
        result.lengthCounts[length] = static_cast<std::uint8_t>(counts[length]);
    std::size_t next = 0;
    for (const Leaf& leaf : leaves)
        if (leaf.symbol != kReserved)
            result.symbols[next++] = static_cast<std::uint8_t>(leaf.symbol);
    return result;
}

} // namespace complexion::jpeg
