// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/healing/lines.h"

#include <cmath>
#include <optional>

namespace complexion::healing {

namespace {

// The ring that is searched, in radii of the disc. It begins where the largest blemishes end.
constexpr float kRingStart = 0.9F;
constexpr float kRingEnd = 1.75F;
constexpr float kReach = 1; // radii: the line passes at most this far from the disc's centre

constexpr int kDirections = 48; // of the search, over half a turn
/// cos and sin of half a turn divided by kDirections.
constexpr double kTurnCosine = 0.99785892323860351;
constexpr double kTurnSine = 0.065403129230143069;

// The refinement: steps of the tilt's tangent, and of the curvature, which is the sagitta in radii at a
// distance of one radius along the line.
constexpr int kTilts = 3;
constexpr float kTilt = 0.022F;
constexpr int kBends = 3;
constexpr float kBend = 0.03F;

constexpr float kMinCorrelation = 0.8F; // of the profiles on both sides
constexpr float kMinShare = 0.35F;      // of the variance in the ring that the line explains
constexpr float kMinDeviation =
    0.09F;                           // of the profile: of the sum of the components, on the logarithmic scale
constexpr int kMinCells = 3;         // at each distance across the line, on each side
constexpr std::size_t kMinRing = 50; // cells

/// A direction and the curvature of a line.
struct Course {
    float dx = 1; // along the line, unit length
    float dy = 0;
    float bend = 0; // per cell

    float along(float x, float y) const { return dx * x + dy * y; }
    /// The distance from the line through the origin.
    float across(float x, float y) const {
        const float v = along(x, y);
        return dx * y - dy * x - bend * v * v;
    }
};

/// A cell of the ring, relative to the disc's centre.
struct Sample {
    float x = 0;
    float y = 0;
    float light = 0; // sum of the components, without the shading across the window
};

/// Calls `visit(x, y, cell)` for the known cells of the ring; positions are relative to the disc's centre.
template <class Visit>
void forEachOfRing(const SkinWindow& window, const Visit& visit) {
    forEachCell(window.around(kRingEnd), [&](int x, int y) {
        const float r = window.distance(x, y);
        const Cell& cell = window.cells.at(x, y);
        if (r >= kRingStart && r <= kRingEnd && cell[kWeight] > 0)
            visit(static_cast<float>(x) - window.centerX, static_cast<float>(y) - window.centerY, cell);
    });
}

/// The mean of the cells at each distance across a line.
template <class Value>
class Profile {
public:
    explicit Profile(int reach) : m_reach(reach), m_bins(2 * static_cast<std::size_t>(reach) + 1) {}

    struct Bin {
        Value sum{};
        int cells = 0;
    };

    Bin& at(int u) { return m_bins[indexOf(u)]; }
    const Bin& at(int u) const { return m_bins[indexOf(u)]; }
    void clear() { std::ranges::fill(m_bins, Bin{}); }

private:
    std::size_t indexOf(int u) const {
        const int index = std::clamp(u, -m_reach, m_reach) + m_reach;
        return static_cast<std::size_t>(index);
    }

    int m_reach;
    std::vector<Bin> m_bins;
};

int binOf(float across) {
    return static_cast<int>(std::floor(across + 0.5F));
}

class LineSearch {
public:
    explicit LineSearch(const SkinWindow& window)
        : m_radius(window.radius),
          m_reach(static_cast<int>(kReach * window.radius)),
          m_before(m_reach),
          m_after(m_reach) {
        forEachOfRing(window, [this](float x, float y, const Cell& cell) {
            m_ring.push_back({x, y, cell[0] + cell[1] + cell[2]});
        });
    }

    std::optional<Course> run() {
        if (m_ring.size() < kMinRing)
            return std::nullopt;
        removeShading();
        Course best;
        float most = 0;
        double cosine = 1;
        double sine = 0;
        for (int i = 0; i < kDirections; ++i) {
            consider({static_cast<float>(cosine), static_cast<float>(sine), 0}, best, most);
            const double next = cosine * kTurnCosine - sine * kTurnSine;
            sine = sine * kTurnCosine + cosine * kTurnSine;
            cosine = next;
        }
        if (most == 0)
            return std::nullopt;
        refine(best, most);
        return isLine(best) ? std::optional(best) : std::nullopt;
    }

private:
    void refine(Course& best, float& most) {
        const Course coarse = best;
        for (int tilt = -kTilts; tilt <= kTilts; ++tilt)
            for (int bend = -kBends; bend <= kBends; ++bend) {
                const float part = static_cast<float>(tilt) * kTilt;
                const float length = std::sqrt(1 + part * part);
                consider({(coarse.dx - part * coarse.dy) / length, (coarse.dy + part * coarse.dx) / length,
                          static_cast<float>(bend) * kBend / m_radius},
                         best, most);
            }
    }

    /// Subtracts the plane of least squares.
    void removeShading() {
        double xx = 1e-9;
        double yy = 1e-9;
        double xy = 0;
        double x = 0;
        double y = 0;
        double mean = 0;
        const auto count = static_cast<double>(m_ring.size());
        for (const Sample& sample : m_ring) {
            x += sample.x;
            y += sample.y;
            mean += sample.light;
        }
        x /= count;
        y /= count;
        mean /= count;
        double right = 0;
        double down = 0;
        for (const Sample& sample : m_ring) {
            const double dx = sample.x - x;
            const double dy = sample.y - y;
            xx += dx * dx;
            yy += dy * dy;
            xy += dx * dy;
            right += dx * (sample.light - mean);
            down += dy * (sample.light - mean);
        }
        const double determinant = xx * yy - xy * xy;
        const double slopeX = (right * yy - down * xy) / determinant;
        const double slopeY = (down * xx - right * xy) / determinant;
        for (Sample& sample : m_ring) {
            sample.light -= static_cast<float>(mean + slopeX * (sample.x - x) + slopeY * (sample.y - y));
            m_energy += sample.light * sample.light;
        }
    }

    void measureProfiles(const Course& course) {
        m_before.clear();
        m_after.clear();
        const auto reach = static_cast<float>(m_reach);
        for (const Sample& sample : m_ring) {
            const float u = course.across(sample.x, sample.y);
            if (u < -reach || u > reach)
                continue;
            auto& bin = (course.along(sample.x, sample.y) < 0 ? m_before : m_after).at(binOf(u));
            bin.sum += sample.light;
            ++bin.cells;
        }
    }

    /// The sums of products of both sides' profiles.
    struct Products {
        float both = 0;
        float before = 0;
        float after = 0;
        float cells = 0;
    };

    Products products() const {
        Products result;
        for (int u = -m_reach; u <= m_reach; ++u) {
            const auto& before = m_before.at(u);
            const auto& after = m_after.at(u);
            if (before.cells < kMinCells || after.cells < kMinCells)
                continue;
            const auto cells = static_cast<float>(std::min(before.cells, after.cells));
            const float a = before.sum / static_cast<float>(before.cells);
            const float b = after.sum / static_cast<float>(after.cells);
            result.both += cells * a * b;
            result.before += cells * a * a;
            result.after += cells * b * b;
            result.cells += cells;
        }
        return result;
    }

    void consider(const Course& course, Course& best, float& most) {
        measureProfiles(course);
        const Products found = products();
        if (found.both <= most)
            return;
        best = course;
        most = found.both;
    }

    bool isLine(const Course& course) {
        measureProfiles(course);
        const Products found = products();
        return found.both > kMinCorrelation * std::sqrt(found.before * found.after) &&
               2 * found.both > kMinShare * m_energy &&
               found.both > found.cells * kMinDeviation * kMinDeviation;
    }

    float m_radius; // of the disc, in cells
    int m_reach;
    std::vector<Sample> m_ring;
    float m_energy = 0; // of the ring's brightness, without shading
    Profile<float> m_before;
    Profile<float> m_after;
};

/// The mean colour of the ring at each distance across the line, on both sides of the disc, less its mean.
/// Values follow each other from -reach on.
std::vector<LogColor> profileOf(const SkinWindow& window, const Course& course, int reach) {
    std::array<Profile<LogColor>, 2> sides = {Profile<LogColor>(reach), Profile<LogColor>(reach)};
    forEachOfRing(window, [&](float x, float y, const Cell& cell) {
        auto& bin = sides[course.along(x, y) < 0 ? 0 : 1].at(binOf(course.across(x, y)));
        for (std::size_t c = 0; c < 3; ++c)
            bin.sum[c] += cell[c];
        ++bin.cells;
    });
    std::vector<LogColor> profile;
    LogColor mean{};
    int known = 0;
    for (int u = -reach; u <= reach; ++u) {
        LogColor value{};
        float count = 0;
        for (const Profile<LogColor>& side : sides) {
            const auto& bin = side.at(u);
            if (bin.cells == 0)
                continue;
            for (std::size_t c = 0; c < 3; ++c)
                value[c] += bin.sum[c] / static_cast<float>(bin.cells);
            ++count;
        }
        for (std::size_t c = 0; c < 3 && count > 0; ++c) {
            value[c] /= count;
            mean[c] += value[c];
        }
        known += count > 0 ? 1 : 0;
        profile.push_back(count > 0 || profile.empty() ? value : profile.back());
    }
    for (LogColor& value : profile)
        for (std::size_t c = 0; c < 3; ++c)
            value[c] -= mean[c] / static_cast<float>(std::max(known, 1));
    return profile;
}

void subtract(SkinWindow& window, const Course& course) {
    const int reach = static_cast<int>(kRingEnd * window.radius);
    const std::vector<LogColor> profile = profileOf(window, course, reach);
    window.lines = CellGrid<Cell>(window.cells.rect());
    forEachCell(window.cells.rect(), [&](int x, int y) {
        const float across =
            course.across(static_cast<float>(x) - window.centerX, static_cast<float>(y) - window.centerY);
        const float place =
            std::clamp(across + static_cast<float>(reach), 0.0F, static_cast<float>(2 * reach));
        const auto before = std::min(static_cast<std::size_t>(place), profile.size() - 2);
        const float part = place - static_cast<float>(before);
        Cell& line = window.lines.at(x, y);
        Cell& cell = window.cells.at(x, y);
        for (std::size_t c = 0; c < 3; ++c) {
            line[c] = profile[before][c] + part * (profile[before + 1][c] - profile[before][c]);
            cell[c] -= line[c];
        }
    });
}

} // namespace

bool subtractLines(SkinWindow& window) {
    const std::optional<Course> course = LineSearch(window).run();
    if (!course)
        return false;
    subtract(window, *course);
    return true;
}

} // namespace complexion::healing
