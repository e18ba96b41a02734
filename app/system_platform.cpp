// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system_platform.h"

#include <QDesktopServices>
#include <QUrl>

#include <chrono>
#include <ctime>
#include <utility>

namespace complexion {

namespace {

constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;

} // namespace

SystemPlatform::SystemPlatform(std::filesystem::path temporaryDirectory, std::function<void()> terminate)
    : m_temporaryDirectory(std::move(temporaryDirectory)), m_terminate(std::move(terminate)) {}

std::uint64_t SystemPlatform::monotonicNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * kNanosecondsPerSecond +
           static_cast<std::uint64_t>(now.tv_nsec);
}

double SystemPlatform::secondsSince1970() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

void SystemPlatform::openAddress(const std::string& url) {
    QDesktopServices::openUrl(QUrl(QString::fromStdString(url), QUrl::StrictMode));
}

} // namespace complexion
