// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/background_task.h"

#include <QMetaObject>

#include <thread>
#include <utility>

namespace complexion {

void BackgroundTask::start(const std::function<void(const Post&)>& work) {
    abandon();
    m_link = std::make_shared<Link>();
    m_link->receiver = m_receiver;
    const Post post = [link = m_link](std::function<void()> function) {
        const std::scoped_lock lock(link->mutex); // keeps the receiver alive meanwhile
        if (link->receiver)
            QMetaObject::invokeMethod(
                link->receiver,
                [link, function = std::move(function)] {
                    if (link->receiver) // no lock: only this thread abandons the task
                        function();
                },
                Qt::QueuedConnection);
    };
    std::thread([work, post] { work(post); }).detach();
}

void BackgroundTask::abandon() {
    if (!m_link)
        return;
    const std::scoped_lock lock(m_link->mutex);
    m_link->receiver = nullptr;
}

} // namespace complexion
