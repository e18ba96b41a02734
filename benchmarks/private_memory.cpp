// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/private_memory.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace complexion::bench {

namespace {

constexpr std::chrono::milliseconds kInterval{2};

/// The private bytes of a process; 0 if it has ended.
double privateBytes(const std::filesystem::path& process) {
    std::ifstream file(process / "statm");
    double all = 0;
    double resident = 0;
    double shared = 0;
    if (!(file >> all >> resident >> shared))
        return 0;
    return (resident - shared) * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

/// Those of a process and its descendants.
double familyBytes(const std::filesystem::path& process) {
    double bytes = privateBytes(process);
    std::error_code ended;
    for (const auto& thread : std::filesystem::directory_iterator(process / "task", ended)) {
        std::ifstream children(thread.path() / "children");
        for (std::string child; children >> child;)
            bytes += familyBytes(std::filesystem::path("/proc") / child);
    }
    return bytes;
}

} // namespace

PrivateMemorySampler::PrivateMemorySampler()
    : m_thread([this] {
          while (!m_isEnded) {
              m_peak = std::max<double>(m_peak, familyBytes("/proc/self"));
              std::this_thread::sleep_for(kInterval);
          }
      }) {}

PrivateMemorySampler::~PrivateMemorySampler() {
    m_isEnded = true;
    m_thread.join();
}

} // namespace complexion::bench
