// SPDX-License-Identifier: GPL-3.0-or-later

// The memory use of an open photo and of its history.
#include "benchmarks/memory.h"

#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"
#include "benchmarks/private_memory.h"
#include "benchmarks/table.h"
#include "imaging/base/fatal.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

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

/// The numbers that this program prints with these arguments, as a child process, because this process
/// already holds memory of previous rows.
std::vector<double> measuredByChild(const std::string& arguments, std::size_t count) {
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    std::FILE* pipe = ::popen(("'" + self.string() + "' " + arguments).c_str(), "r");
    if (pipe == nullptr)
        fatal("the memory measurement failed");
    std::vector<double> numbers;
    std::array<char, 256> word{};
    while (numbers.size() < count && std::fscanf(pipe, "%255s", word.data()) == 1) {
        char* end = nullptr;
        const double number = std::strtod(word.data(), &end);
        if (end != word.data()) // other words are the editor's messages
            numbers.push_back(number);
    }
    if (numbers.size() < count)
        fatal("the memory measurement failed");
    ::pclose(pipe);
    return numbers;
}

Memory measured() {
    const std::vector<double> numbers =
        measuredByChild("--memory '" + portraitFile(24, Kind::Jpeg).string() + "'", 3);
    return {numbers[0], numbers[1], numbers[2]};
}

/// Unlike getrusage(), this does not count what the process was before it executed this program.
double peakBytes() {
    constexpr double kKibibyte = 1024;
    std::ifstream file("/proc/self/status");
    for (std::string word; file >> word;)
        if (double kibibytes = 0; word == "VmHWM:" && file >> kibibytes)
            return kibibytes * kKibibyte;
    fatal("the kernel reports no peak");
}

/// The peak of a photo of 16 bits a sample, by 2 GiB.
Row deepPeak(int megapixels) {
    constexpr double kLimit = 2.0 * (1 << 30);
    return {.name = rowName("memory_deep", megapixels),
            .goal = atMost(1),
            .rounds = 1,
            .prepare = [=]() -> Round {
                return [=](Samples& samples) {
                    const std::filesystem::path target = folder() / "deep.tiff";
                    const std::string photo = portraitFile(megapixels, Kind::DeepTiff).string();
                    const std::vector<double> peak =
                        measuredByChild("--peak '" + photo + "' '" + target.string() + "'", 1);
                    std::filesystem::remove(target);
                    samples.add(peak[0], kLimit);
                };
            }};
}

/// The memory to open a photo.
struct OpenedMemory {
    double resident = 0;
    double peak = 0; // of all processes together
};

OpenedMemory measuredOpening(const std::string& mode, int megapixels) {
    const std::vector<double> numbers =
        measuredByChild(mode + " '" + portraitFile(megapixels, Kind::Jpeg).string() + "'", 2);
    return {.resident = numbers[0], .peak = numbers[1]};
}

/// How much more memory it takes to have the photo read by a confined child than to read it in the program.
Row confined(const std::string& name, double OpenedMemory::* bytes, int megapixels) {
    return {.name = rowName(name, megapixels), .goal = atMost(1.02), .rounds = 3, .prepare = [=]() -> Round {
                return [=](Samples& samples) {
                    samples.add(measuredOpening("--opened", megapixels).*bytes,
                                measuredOpening("--opened-here", megapixels).*bytes);
                };
            }};
}

} // namespace

int measureOpened(const std::filesystem::path& photo) {
    Editor editor;
    const PrivateMemorySampler sampler;
    editor.open(photo);
    std::printf("%.0f %.0f\n", residentBytes(), sampler.peak());
    return 0;
}

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

int measurePeak(const std::filesystem::path& photo, const std::filesystem::path& target) {
    Editor editor;
    editor.open(photo);
    editor.setRadius(kRadius);
    editor.clickOnSkin(kSpacing);
    editor.save(target);
    std::printf("%.0f\n", peakBytes());
    return 0;
}

void addMemoryRows() {
    addRow(deepPeak(100));
    for (const int megapixels : kMegapixels) {
        addRow(confined("confined_memory", &OpenedMemory::resident, megapixels));
        addRow(confined("confined_peak", &OpenedMemory::peak, megapixels));
    }
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
