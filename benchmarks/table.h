// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace complexion::bench {

/// What a row's value has to be.
struct Goal {
    double limit = 0;
    bool isLeast = false;
};

constexpr Goal atMost(double limit) {
    return {limit, false};
}

constexpr Goal atLeast(double limit) {
    return {limit, true};
}

/// What the rounds of one row have measured: quotients of something and its reference, which were measured
/// one right after the other, so that a busy machine changes both.
class Samples {
public:
    /// Adds one pair, in seconds or in bytes. A row may measure the same thing in several `variants`; the one
    /// that meets the goal worst counts.
    void add(double subject, double reference, int variant = 0);

    /// Of the variant that meets the goal worst.
    struct Medians {
        double value = 0;
        double subject = 0;
        double reference = 0;
    };
    Medians worst(const Goal& goal) const;
    /// Of each variant.
    std::map<int, Medians> all() const;

private:
    struct Pair {
        double subject;
        double reference;
    };
    std::map<int, std::vector<Pair>> m_variants;
};

/// Measures once and adds what it finds.
using Round = std::function<void(Samples&)>;

struct Row {
    std::string name; ///< "subject/megapixels", or the subject alone
    Goal goal;
    int rounds = 9;
    /// Makes what the rounds work on; called when the row's turn comes.
    std::function<Round()> prepare;
};

/// Hands a row to the benchmark library. The first round warms up and is not counted.
void addRow(const Row& row);

/// "subject/megapixels".
std::string rowName(const std::string& subject, int megapixels);

/// Runs the rows that are named: words that are numbers choose sizes, others the beginnings of names; without
/// a word, all rows. Prints the table, writes the library's JSON file to `jsonPath`; the program's exit
/// status.
int runTable(const std::vector<std::string>& words, const std::string& jsonPath);

// The rows, by subject.
void addClickRows();
void addStateRows();
void addEffectRows();
void addPaintingRows();
void addOpeningRows();
void addSavingRows();
void addMemoryRows();
void addJournalRows();
void addStartRow();
void addNaiveRow();

} // namespace complexion::bench
