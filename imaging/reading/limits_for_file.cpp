// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/limits_for_file.h"

#include "imaging/base/picture_limits.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr std::uint64_t kMiB = 1 << 20;
/// Seconds of waiting for each second of processor time.
constexpr int kPatience = 2;

} // namespace

ReaderLimits limitsForFile(std::size_t length) {
    // The densest format codes up to so many pixels in a byte; decoders keep up to so many bytes of each.
    constexpr std::uint64_t kMaxPixelsPerByte = 4096;
    constexpr std::uint64_t kBytesPerPixel = 16;
    constexpr std::uint64_t kMemory = 1024 * kMiB; // threads, code, and the decoders' tables
    constexpr std::uint64_t kCopiesOfFile = 4;
    constexpr std::uint64_t kSeconds = 60;
    constexpr std::uint64_t kBytesPerSecond = 4 * kMiB;
    const std::uint64_t area = std::clamp<std::uint64_t>(
        kMaxPixelsPerByte * length, std::uint64_t{kAlwaysAllowedArea}, std::uint64_t{kMaxArea});
    return {.memory = kMemory + kBytesPerPixel * area + kCopiesOfFile * length,
            .cpuSeconds = kSeconds + length / kBytesPerSecond};
}

AnswerReceiver::Clock::time_point deadlineFor(const ReaderLimits& limits) {
    return AnswerReceiver::Clock::now() + std::chrono::seconds(kPatience * limits.cpuSeconds);
}

} // namespace complexion
