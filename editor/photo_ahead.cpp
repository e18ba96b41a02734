// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/photo_ahead.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace complexion {

namespace {

constexpr std::chrono::milliseconds kProgressInterval{100}; // as openPhoto's
constexpr std::chrono::seconds kMaxEndingTime{1};

} // namespace

struct PhotoAhead::Reading {
    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by the mutex until the photo is there.
    std::optional<FileIdentity> identity;
    std::optional<Result<OpenedPhoto>> photo;
    std::optional<Image> preview; // until it is shown
    bool isDone = false;
    std::atomic<double> part = 0;
    std::atomic<bool> isCancelled = false;

    void read(const std::filesystem::path& path, const ReadingProgress& progress,
              const PreviewListener& listener) {
        const std::optional<FileIdentity> found = identify(path);
        Result<OpenedPhoto> opened = openPhoto(path, progress, listener);
        {
            const std::scoped_lock lock(mutex);
            identity = found;
            photo = std::move(opened);
            isDone = true;
        }
        changed.notify_all();
    }

    void setPreview(const Image& image) {
        {
            const std::scoped_lock lock(mutex);
            preview = image;
        }
        changed.notify_all();
    }
};

PhotoAhead::PhotoAhead(std::filesystem::path path)
    : m_path(std::move(path)), m_reading(std::make_shared<Reading>()) {
    try {
        std::thread([reading = m_reading, file = m_path] {
            reading->read(
                file,
                [&reading](double part) {
                    reading->part = part;
                    return !reading->isCancelled;
                },
                [&reading](const Image& preview) { reading->setPreview(preview); });
        }).detach();
    } catch (const std::system_error&) {
        m_reading = nullptr; // no thread: wait() reads
    }
}

PhotoAhead::~PhotoAhead() {
    if (!m_reading)
        return;
    m_reading->isCancelled = true;
    std::unique_lock lock(m_reading->mutex);
    m_reading->changed.wait_for(lock, kMaxEndingTime, [this] { return m_reading->isDone; });
}

Result<OpenedPhoto> PhotoAhead::wait(const ReadingProgress& progress, const PreviewListener& listener) {
    if (!m_reading) {
        m_reading = std::make_shared<Reading>();
        m_reading->read(m_path, progress, listener);
    }
    const auto hasChanged = [this] { return m_reading->isDone || m_reading->preview; };
    std::unique_lock lock(m_reading->mutex);
    for (;;) {
        m_reading->changed.wait_for(lock, kProgressInterval, hasChanged);
        if (m_reading->isDone)
            break;
        const std::optional<Image> preview = std::exchange(m_reading->preview, std::nullopt);
        lock.unlock(); // the callbacks may take long
        if (preview && listener)
            listener(*preview);
        if (progress && !progress(m_reading->part)) {
            m_reading->isCancelled = true;
            return Error{"cancelled", ErrorKind::Cancelled};
        }
        lock.lock();
    }
    return *std::exchange(m_reading->photo, std::nullopt);
}

const std::optional<FileIdentity>& PhotoAhead::identity() const {
    return m_reading->identity;
}

} // namespace complexion
