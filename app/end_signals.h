// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>

namespace complexion {

/// Tells the event loop that the system asks the process to end: SIGINT, SIGTERM or SIGHUP. One a process.
class EndSignals : public QObject {
    Q_OBJECT
public:
    EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;
    ~EndSignals() override;

Q_SIGNALS:
    void received();

private:
    std::array<int, 2> m_pipe = {}; // read end, write end
    QSocketNotifier m_notifier;
};

} // namespace complexion
