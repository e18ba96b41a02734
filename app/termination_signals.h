// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>

namespace complexion {

/// Delivers SIGINT, SIGTERM and SIGHUP to the event loop. Only one instance per process.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    std::array<int, 2> m_pipe = {}; // read end, write end
    QSocketNotifier m_notifier;
};

} // namespace complexion
