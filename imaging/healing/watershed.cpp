// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/watershed.h"

#include <bit>
#include <cstdint>
#include <queue>
#include <utility>

namespace complexion::healing {

namespace {

class Flood {
public:
    Flood(const CellGrid<float>& height, float minHeight)
        : m_height(height),
          m_claims(height.rect()),
          m_open(
              {height.rect().x - 1, height.rect().y - 1, height.rect().width + 2, height.rect().height + 2}) {
        forEachCell(height.rect(),
                    [&](int x, int y) { m_open.at(x, y) = height.at(x, y) >= minHeight ? 1 : 0; });
    }

    /// Claims everything that is connected to `markers`, in any order.
    void claimConnected(std::vector<PixelPosition> markers, Claim claim) {
        for (const PixelPosition& marker : markers)
            take(xOf(marker), yOf(marker), claim);
        while (!markers.empty()) {
            const PixelPosition place = markers.back();
            markers.pop_back();
            forEachOpenAround(xOf(place), yOf(place), [&](int x, int y) {
                take(x, y, claim);
                markers.push_back({y, x});
            });
        }
    }

    /// Claims from the peaks down.
    void divide(PixelPosition own, const std::vector<PixelPosition>& foreign) {
        take(xOf(own), yOf(own), Claim::Own);
        for (const PixelPosition& marker : foreign)
            take(xOf(marker), yOf(marker), Claim::Foreign);
        push(xOf(own), yOf(own), m_height.at(xOf(own), yOf(own)));
        for (const PixelPosition& marker : foreign)
            push(xOf(marker), yOf(marker), m_height.at(xOf(marker), yOf(marker)));
        while (!m_fronts.empty()) {
            const Front front = m_fronts.top();
            m_fronts.pop();
            const auto claim = static_cast<Claim>(m_claims.at(front.x, front.y));
            forEachOpenAround(front.x, front.y, [&](int x, int y) {
                take(x, y, claim);
                push(x, y, std::min(front.level(), m_height.at(x, y)));
            });
        }
    }

    bool isOpen(PixelPosition place) const { return m_open.at(xOf(place), yOf(place)) != 0; }
    CellMask claims() && { return std::move(m_claims); }

private:
    /// A claimed cell from which the flood continues.
    struct Front {
        /// The level's bits, which order heights of 0 and more like integers, above the order of arrival in
        /// reverse: at equal heights the first is served first, so that the result is deterministic.
        std::uint64_t priority;
        int x;
        int y;

        Front(float level, std::uint32_t order, int column, int row)
            : priority(std::uint64_t{std::bit_cast<std::uint32_t>(level)} << 32 | ~order),
              x(column),
              y(row) {}

        float level() const { return std::bit_cast<float>(static_cast<std::uint32_t>(priority >> 32)); }
        bool operator<(const Front& other) const { return priority < other.priority; }
    };

    static int xOf(PixelPosition place) { return static_cast<int>(place.column); }
    static int yOf(PixelPosition place) { return static_cast<int>(place.row); }

    template <class Visit>
    void forEachOpenAround(int x, int y, const Visit& visit) const {
        for (int nextY = y - 1; nextY <= y + 1; ++nextY) {
            const unsigned char* row = &m_open.at(x, nextY);
            for (int i = -1; i <= 1; ++i)
                if (row[i] != 0)
                    visit(x + i, nextY);
        }
    }

    void take(int x, int y, Claim claim) {
        m_claims.at(x, y) = static_cast<unsigned char>(claim);
        m_open.at(x, y) = 0;
    }

    /// Most cells are inside a region and need no front.
    void push(int x, int y, float level) {
        bool isFront = false;
        forEachOpenAround(x, y, [&](int, int) { isFront = true; });
        if (isFront)
            m_fronts.emplace(level, m_order++, x, y);
    }

    const CellGrid<float>& m_height;
    CellMask m_claims;
    CellMask m_open; // high enough and without an owner yet; has a border, which avoids checks at the edge
    std::priority_queue<Front> m_fronts;
    std::uint32_t m_order = 0;
};

} // namespace

CellMask watershed(const CellGrid<float>& height, PixelPosition own,
                   const std::vector<PixelPosition>& foreign, float minHeight) {
    // Only what is connected to the own region must be divided from it.
    Flood flood(height, minHeight);
    Flood around = flood;
    around.claimConnected({own}, Claim::Own);
    std::vector<PixelPosition> connected;
    std::vector<PixelPosition> apart;
    for (const PixelPosition& marker : foreign)
        (around.isOpen(marker) ? apart : connected).push_back(marker);
    if (connected.empty()) {
        around.claimConnected(std::move(apart), Claim::Foreign);
        return std::move(around).claims();
    }
    flood.claimConnected(std::move(apart), Claim::Foreign);
    flood.divide(own, connected);
    return std::move(flood).claims();
}

} // namespace complexion::healing
