// SPDX-License-Identifier: GPL-3.0-or-later

// The memory use of an open photo and of its history.
#include "benchmarks/memory.h"

#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"
#include "benchmarks/table.h"
#include "imaging/base/fatal.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>

namespace complexion::bench {

namespace {

constexpr int kClicks = 50;
constexpr int kRadius = 20;
constexpr QPointF kSpacing(17, 40);

double residentBytes() {
    std::ifstream file("/proc/self/statm");
    double all = 0;
    double resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

struct Memory {
    double empty = 0;
    double opened = 0;
    double clicked = 0;
};

/// Measures in a child process, because this process already holds memory of previous rows.
Memory measured() {
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string command =
        "'" + self.string() + "' --memory '" + portraitFile(24, Kind::Jpeg).string() + "'";
    std::FILE* pipe = ::popen(command.c_str(), "r");
    Memory memory;
    if (pipe == nullptr ||
        std::fscanf(pipe, "%lf %lf %lf", &memory.empty, &memory.opened, &memory.clicked) != 3)
        fatal("the memory measurement failed");
    ::pclose(pipe);
    return memory;
}

} // namespace

int measureMemory(const std::filesystem::path& photo) {
    Editor editor;
    const double empty = residentBytes();
    editor.open(photo);
    const double opened = residentBytes();
    editor.setRadius(kRadius);
    for (int i = 0; i < kClicks; ++i)
        editor.clickOnSkin(kSpacing);
    std::printf("%.0f %.0f %.0f\n", empty, opened, residentBytes());
    return 0;
}

void addMemoryRows() {
    addRow({.name = rowName("memory_open", 24), .goal = atMost(2), .rounds = 3, .prepare = []() -> Round {
                return [](Samples& samples) {
                    const Memory memory = measured();
                    const auto pixels = static_cast<double>(portraitSize(24).area()) * sizeof(RGBA32);
                    samples.add(memory.opened - memory.empty, pixels);
                };
            }});
    addRow({.name = rowName("memory_50", 24), .goal = atMost(1.15), .rounds = 3, .prepare = []() -> Round {
                return [](Samples& samples) {
                    const Memory memory = measured();
                    samples.add(memory.clicked - memory.empty, memory.opened - memory.empty);
                };
            }});
}

} // namespace complexion::bench
