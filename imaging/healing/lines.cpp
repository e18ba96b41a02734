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

/// The directions are compared on a ring that is reduced to half its size, if it remains at least this large.
constexpr float kMinReducedRadius = 6;  // cells
constexpr float kMinCellsOfReduced = 3; // of 4

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
constexpr float kMinShare = 0.35F;      // of the variance in the ring that the line explains,
constexpr float kMinCoarseShare = 0.2F; // and before its direction is refined
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

    /// The bin of the distance that is nearest to `across`.
    Bin& nearest(float across) {
        const auto reach = static_cast<float>(m_reach);
        // Not negative, so that the conversion rounds down.
        return m_bins[static_cast<std::size_t>(
            static_cast<int>(std::clamp(across, -reach, reach) + (reach + 0.5F)))];
    }
    const Bin& at(int u) const {
        const int index = u + m_reach;
        return m_bins[static_cast<std::size_t>(index)];
    }
    void clear() { std::ranges::fill(m_bins, Bin{}); }

private:
    int m_reach;
    std::vector<Bin> m_bins;
};

/// The sums of products of the profiles on both sides of the disc.
struct Products {
    float both = 0;
    float before = 0;
    float after = 0;
    float cells = 0;
};

/// The cells of the ring, and the profiles across a line through its middle.
class Ring {
public:
    Ring(std::vector<Sample> samples, float radius)
        : m_samples(std::move(samples)),
          m_radius(radius),
          m_reach(static_cast<int>(kReach * radius)),
          m_before(m_reach),
          m_after(m_reach) {}

    const std::vector<Sample>& samples() const { return m_samples; }
    float energy() const {
        float energy = 0;
        for (const Sample& sample : m_samples)
            energy += sample.light * sample.light;
        return energy;
    }
    float radius() const { return m_radius; }

    Products productsAcross(const Course& course) {
        measureProfiles(course);
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

private:
    void measureProfiles(const Course& course) {
        m_before.clear();
        m_after.clear();
        const auto reach = static_cast<float>(m_reach);
        for (const Sample& sample : m_samples) {
            const float u = course.across(sample.x, sample.y);
            if (u < -reach || u > reach)
                continue;
            auto& bin = (course.along(sample.x, sample.y) < 0 ? m_before : m_after).nearest(u);
            bin.sum += sample.light;
            ++bin.cells;
        }
    }

    std::vector<Sample> m_samples;
    float m_radius; // of the disc, in cells
    int m_reach;
    Profile<float> m_before;
    Profile<float> m_after;
};

/// The ring reduced to half its size: each sample is the mean of 2 by 2 cells.
Ring halved(const Ring& ring) {
    struct Sum {
        Sample sample;
        float cells = 0;
    };
    const int reach = static_cast<int>(kRingEnd * ring.radius() / 2) + 2;
    CellGrid<Sum> sums({-reach, -reach, 2 * reach, 2 * reach});
    for (const Sample& sample : ring.samples()) {
        Sum& sum =
            sums.at(static_cast<int>(std::floor(sample.x / 2)), static_cast<int>(std::floor(sample.y / 2)));
        sum.sample.x += sample.x / 2;
        sum.sample.y += sample.y / 2;
        sum.sample.light += sample.light;
        ++sum.cells;
    }
    std::vector<Sample> samples;
    forEachCell(sums.rect(), [&](int x, int y) {
        const auto& [sample, cells] = sums.at(x, y);
        if (cells >= kMinCellsOfReduced)
            samples.push_back({sample.x / cells, sample.y / cells, sample.light / cells});
    });
    return {std::move(samples), ring.radius() / 2};
}

/// The ring's cells, less the plane of least squares through their brightness.
std::vector<Sample> samplesWithoutShading(const SkinWindow& window) {
    std::vector<Sample> samples;
    forEachOfRing(window, [&](float x, float y, const Cell& cell) {
        samples.push_back({x, y, cell[0] + cell[1] + cell[2]});
    });
    double xx = 1e-9;
    double yy = 1e-9;
    double xy = 0;
    double x = 0;
    double y = 0;
    double mean = 0;
    const auto count = static_cast<double>(std::max<std::size_t>(samples.size(), 1));
    for (const Sample& sample : samples) {
        x += sample.x;
        y += sample.y;
        mean += sample.light;
    }
    x /= count;
    y /= count;
    mean /= count;
    double right = 0;
    double down = 0;
    for (const Sample& sample : samples) {
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
    for (Sample& sample : samples)
        sample.light -= static_cast<float>(mean + slopeX * (sample.x - x) + slopeY * (sample.y - y));
    return samples;
}

/// The course with the largest product so far.
class BestCourse {
public:
    const Course& operator*() const { return m_course; }
    float product() const { return m_product; }

    void consider(const Course& course, Ring& ring) {
        const float product = ring.productsAcross(course).both;
        if (product <= m_product)
            return;
        m_course = course;
        m_product = product;
    }

private:
    Course m_course;
    float m_product = 0;
};

/// Tries directions over half a turn.
BestCourse findDirection(Ring& ring) {
    BestCourse best;
    double cosine = 1;
    double sine = 0;
    for (int i = 0; i < kDirections; ++i) {
        best.consider({static_cast<float>(cosine), static_cast<float>(sine), 0}, ring);
        const double next = cosine * kTurnCosine - sine * kTurnSine;
        sine = sine * kTurnCosine + cosine * kTurnSine;
        cosine = next;
    }
    return best;
}

Course tilted(const Course& course, float tangent) {
    const float length = std::sqrt(1 + tangent * tangent);
    return {(course.dx - tangent * course.dy) / length, (course.dy + tangent * course.dx) / length,
            course.bend};
}

/// Refines a direction and finds the curvature. A tilt moves the profiles of both sides apart and a bend
/// changes each, so that one after the other finds both.
Course refined(const Course& coarse, Ring& ring) {
    BestCourse straight;
    for (int tilt = -kTilts; tilt <= kTilts; ++tilt)
        straight.consider(tilted(coarse, static_cast<float>(tilt) * kTilt), ring);
    BestCourse best = straight;
    for (int bend = -kBends; bend <= kBends; ++bend) {
        Course course = *straight;
        course.bend = static_cast<float>(bend) * kBend / ring.radius();
        best.consider(course, ring);
    }
    return *best;
}

bool isLine(const Course& course, Ring& ring) {
    const Products found = ring.productsAcross(course);
    return found.both > kMinCorrelation * std::sqrt(found.before * found.after) &&
           2 * found.both > kMinShare * ring.energy() &&
           found.both > found.cells * kMinDeviation * kMinDeviation;
}

/// The line through the disc that explains most of the ring's brightness, if there is one.
std::optional<Course> findLine(const SkinWindow& window) {
    Ring ring(samplesWithoutShading(window), window.radius);
    if (ring.samples().size() < kMinRing)
        return std::nullopt;
    std::optional<Ring> reduced;
    if (ring.radius() / 2 >= kMinReducedRadius)
        reduced = halved(ring);
    Ring& coarse = reduced ? *reduced : ring;
    const BestCourse direction = findDirection(coarse);
    if (2 * direction.product() <= kMinCoarseShare * coarse.energy())
        return std::nullopt;
    const Course course = refined(*direction, ring);
    return isLine(course, ring) ? std::optional(course) : std::nullopt;
}

/// The mean colour of the ring at each distance across the line, on both sides of the disc, less its mean.
/// Values follow each other from -reach on.
std::vector<LogColor> profileOf(const SkinWindow& window, const Course& course, int reach) {
    std::array<Profile<LogColor>, 2> sides = {Profile<LogColor>(reach), Profile<LogColor>(reach)};
    forEachOfRing(window, [&](float x, float y, const Cell& cell) {
        auto& bin = sides[course.along(x, y) < 0 ? 0 : 1].nearest(course.across(x, y));
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
    const std::optional<Course> course = findLine(window);
    if (!course)
        return false;
    subtract(window, *course);
    return true;
}

} // namespace complexion::healing
