// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace complexion::bench {

/// The bound that a row's value must meet.
struct Goal {
    double limit = 0;
    bool isMinimum = false;
};

constexpr Goal atMost(double limit) {
    return {limit, false};
}

constexpr Goal atLeast(double limit) {
    return {limit, true};
}

/// For a value that is only shown.
constexpr Goal noGoal() {
    return {std::numeric_limits<double>::infinity(), false};
}

/// The measurements of one row: ratios of a subject to its reference. Both are measured in direct succession,
/// so that load on the machine affects both.
class Samples {
public:
    /// Adds a pair of measurements, in seconds or bytes. A row may measure several variants; the one that is
    /// worst with respect to the goal counts.
    void add(double subject, double reference, int variant = 0);

    /// The medians of one variant.
    struct Medians {
        double value = 0;
        double subject = 0;
        double reference = 0;
        double low = 0; ///< the quartiles of the ratio
        double high = 0;
    };
    Medians worst(const Goal& goal) const;
    /// The medians of each variant.
    std::map<int, Medians> all() const;

private:
    struct Pair {
        double subject;
        double reference;
    };
    std::map<int, std::vector<Pair>> m_variants;
};

/// Measures once and adds the results.
using Round = std::function<void(Samples&)>;

struct Row {
    std::string name; ///< "subject/megapixels", or the subject alone
    Goal goal;
    int rounds = 9;
    /// Creates the fixture of the rounds; called immediately before them.
    std::function<Round()> prepare;
};

/// Registers a row with the benchmark library. The first round is a warm-up and is not counted.
void addRow(const Row& row);

/// "subject/megapixels".
std::string rowName(const std::string& subject, int megapixels);

/// Runs the selected rows: numbers among `words` select megapixels, other words prefixes of names; without
/// words, all rows run. Prints the table and writes the library's JSON file to `jsonPath`. Returns the
/// program's exit status.
int runTable(const std::vector<std::string>& words, const std::string& jsonPath);

// The rows, by subject.
void addClickRows();
void addStateRows();
void addEffectRows();
void addPaintingRows();
void addLargeScreenRows();
void addPixelCostRows();
void addOpeningRows();
void addSavingRows();
void addMemoryRows();
void addJournalRows();
void addStartRow();
void addWholeProcessRow();
void addNaiveRow();

} // namespace complexion::bench
