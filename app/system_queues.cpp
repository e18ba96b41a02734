// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system_queues.h"

#include <utility>

namespace complexion {

void SystemQueues::submitBackground(std::function<void()> work) {
    if (!m_finished)
        m_background.start(std::move(work));
}

void SystemQueues::submitMain(std::function<void()> work) {
    QMetaObject::invokeMethod(&m_mainQueue, std::move(work), Qt::QueuedConnection);
}

void SystemQueues::finish() {
    m_finished = true;
    m_background.clear();
    m_background.waitForDone();
}

} // namespace complexion
