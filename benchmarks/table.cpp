// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/table.h"

#include "benchmarks/stopwatch.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

namespace complexion::bench {

namespace {

constexpr double kMillisecondsPerSecond = 1000;

/// The value below which `share` of `values` are, interpolated.
double quantile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    const double place = share * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const std::size_t above = std::min(below + 1, values.size() - 1);
    return std::lerp(values[below], values[above], place - static_cast<double>(below));
}

double median(const std::vector<double>& values) {
    return quantile(values, 0.5);
}

bool isWorse(double value, double than, const Goal& goal) {
    return goal.isMinimum ? value < than : value > than;
}

void run(const Row& row, benchmark::State& state) {
    const Round round = row.prepare();
    Samples warmUp;
    round(warmUp);
    Samples samples;
    std::vector<double> processor;
    for (auto iteration : state) {
        (void)iteration;
        const double before = processorTime();
        const double start = now();
        round(samples);
        state.SetIterationTime(now() - start);
        processor.push_back(processorTime() - before);
    }
    const Samples::Medians medians = samples.worst(row.goal);
    state.counters["value"] = medians.value;
    state.counters["value_low"] = medians.low;
    state.counters["value_high"] = medians.high;
    state.counters["goal"] = row.goal.limit;
    state.counters["goal_is_minimum"] = row.goal.isMinimum ? 1 : 0;
    state.counters["subject_ms"] = medians.subject * kMillisecondsPerSecond;
    state.counters["reference_ms"] = medians.reference * kMillisecondsPerSecond;
    const std::map<int, Samples::Medians> variants = samples.all();
    if (variants.size() > 1)
        for (const auto& [variant, part] : variants)
            state.counters["subject_" + std::to_string(variant) + "_ms"] =
                part.subject * kMillisecondsPerSecond;
    state.counters["round_processor_ms"] = median(processor) * kMillisecondsPerSecond;
}

/// Prints each row as `name value goal ok|SHORT`, or as `name value` if it has no goal.
class TablePrinter final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override {
        std::printf("%-26s %10s %10s\n", "name", "value", "goal");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                std::printf("%-26s %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
                m_allMet = false;
                continue;
            }
            const auto counter = [&run](const char* name) { return run.counters.at(name).value; };
            const bool isMinimum = counter("goal_is_minimum") != 0;
            const bool isMet = !isWorse(counter("value"), counter("goal"), {0, isMinimum});
            m_allMet = m_allMet && isMet;
            if (std::isinf(counter("goal"))) {
                std::printf("%-26s %10.4g\n", run.run_name.function_name.c_str(), counter("value"));
                continue;
            }
            std::printf("%-26s %10.4g %2s %7.4g %s\n", run.run_name.function_name.c_str(), counter("value"),
                        isMinimum ? ">=" : "<=", counter("goal"), isMet ? "ok" : "SHORT");
            std::fflush(stdout);
        }
    }

    bool allMet() const { return m_allMet; }

private:
    bool m_allMet = true;
};

bool isNumber(const std::string& word) {
    return !word.empty() && std::ranges::all_of(word, [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// The regular expression with which the library selects rows by name.
std::string filterOf(const std::vector<std::string>& words) {
    std::string names;
    std::string sizes;
    for (const std::string& word : words) {
        std::string& alternatives = isNumber(word) ? sizes : names;
        alternatives += (alternatives.empty() ? "" : "|") + word;
    }
    return "^(" + names + ")[^/]*" + (sizes.empty() ? "" : "/(" + sizes + ")/");
}

} // namespace

void Samples::add(double subject, double reference, int variant) {
    m_variants[variant].push_back({subject, reference});
}

std::map<int, Samples::Medians> Samples::all() const {
    std::map<int, Medians> all;
    for (const auto& [variant, pairs] : m_variants) {
        const auto each = [&pairs = pairs](const auto& part) {
            std::vector<double> parts;
            std::ranges::transform(pairs, std::back_inserter(parts), part);
            return parts;
        };
        const std::vector<double> ratios =
            each([](const Pair& pair) { return pair.subject / pair.reference; });
        all[variant] = {.value = median(ratios),
                        .subject = median(each([](const Pair& pair) { return pair.subject; })),
                        .reference = median(each([](const Pair& pair) { return pair.reference; })),
                        .low = quantile(ratios, 0.25),
                        .high = quantile(ratios, 0.75)};
    }
    return all;
}

Samples::Medians Samples::worst(const Goal& goal) const {
    const std::map<int, Medians> variants = all();
    return std::ranges::min_element(
               variants,
               [&](const auto& a, const auto& b) { return isWorse(a.second.value, b.second.value, goal); })
        ->second;
}

void addRow(const Row& row) {
    benchmark::RegisterBenchmark(row.name.c_str(), [row](benchmark::State& state) { run(row, state); })
        ->Iterations(row.rounds)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

std::string rowName(const std::string& subject, int megapixels) {
    return subject + "/" + std::to_string(megapixels);
}

int runTable(const std::vector<std::string>& words, const std::string& jsonPath) {
    std::vector<std::string> options = {"speed", "--benchmark_filter=" + filterOf(words),
                                        "--benchmark_out=" + jsonPath, "--benchmark_out_format=json"};
    std::vector<char*> arguments;
    std::ranges::transform(options, std::back_inserter(arguments),
                           [](std::string& option) { return option.data(); });
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    TablePrinter printer;
    const std::size_t rows = benchmark::RunSpecifiedBenchmarks(&printer);
    if (rows == 0) {
        std::fputs("No row matches.\n", stderr);
        return 2;
    }
    return printer.allMet() ? 0 : 1;
}

} // namespace complexion::bench
