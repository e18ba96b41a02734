// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <mutex>

namespace complexion {

/// Work that may never finish, such as calls to a file system whose server is gone. It runs on a detached
/// thread and can be abandoned: its results are then ignored, and nothing waits for it, not even the
/// program's exit.
class BackgroundTask {
public:
    /// Runs a function on the receiver's thread, unless the task has been abandoned by then. Thread-safe.
    using Post = std::function<void(std::function<void()>)>;

    /// `receiver` must outlive the task.
    explicit BackgroundTask(QObject* receiver) : m_receiver(receiver) {}
    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;
    ~BackgroundTask() { abandon(); }

    /// Abandons the current work and starts `work`, which must own everything it uses.
    void start(const std::function<void(const Post&)>& work);
    void abandon();

private:
    struct Link {
        std::mutex mutex;
        QObject* receiver = nullptr; // null once abandoned
    };

    QObject* m_receiver;
    std::shared_ptr<Link> m_link; // null before the first start
};

} // namespace complexion
