// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/watershed.h"

#include "imaging/healing/regions.h"

#include <bit>
#include <cstdint>
#include <queue>
#include <utility>

namespace complexion::healing {

namespace {

int xOf(PixelPosition place) {
    return static_cast<int>(place.column);
}

int yOf(PixelPosition place) {
    return static_cast<int>(place.row);
}

/// The cells of at least `minHeight` that are connected to `places`.
CellMask connectedTo(std::vector<PixelPosition> places, const CellGrid<float>& height, float minHeight) {
    CellMask connected(height.rect());
    for (const PixelPosition& place : places)
        connected.at(xOf(place), yOf(place)) = 1;
    growThrough(connected, places, [&](int x, int y) { return height.at(x, y) >= minHeight; });
    return connected;
}

void claimAll(const CellMask& cells, Claim claim, CellMask& claims) {
    forEachCell(cells.rect(), [&](int x, int y) {
        if (cells.at(x, y))
            claims.at(x, y) = static_cast<unsigned char>(claim);
    });
}

/// Divides a region, from the peaks down.
class Flood {
public:
    Flood(const CellGrid<float>& height, const CellMask& region, CellMask& claims)
        : m_height(height),
          m_claims(claims),
          m_open(
              {height.rect().x - 1, height.rect().y - 1, height.rect().width + 2, height.rect().height + 2}) {
        forEachCell(region.rect(), [&](int x, int y) { m_open.at(x, y) = region.at(x, y); });
    }

    void run(PixelPosition own, const std::vector<PixelPosition>& foreign) {
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
    CellMask& m_claims;
    CellMask m_open; // without an owner yet; has a border, which avoids checks at the edge
    std::priority_queue<Front> m_fronts;
    std::uint32_t m_order = 0;
};

} // namespace

CellMask watershed(const CellGrid<float>& height, PixelPosition own,
                   const std::vector<PixelPosition>& foreign, float minHeight) {
    // Only what is connected to the own region must be divided from it.
    const CellMask around = connectedTo({own}, height, minHeight);
    std::vector<PixelPosition> connected;
    std::vector<PixelPosition> apart;
    for (const PixelPosition& marker : foreign)
        (around.at(xOf(marker), yOf(marker)) ? connected : apart).push_back(marker);
    CellMask claims(height.rect());
    claimAll(connectedTo(std::move(apart), height, minHeight), Claim::Foreign, claims);
    if (connected.empty())
        claimAll(around, Claim::Own, claims);
    else
        Flood(height, around, claims).run(own, connected);
    return claims;
}

} // namespace complexion::healing
