// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/termination_signals.h"

#include "imaging/base/fatal.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace complexion {

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

int writeEnd = -1; // of the pipe; the only state of the signal handler

void writeToPipe(int) {
    const char byte = 0;
    [[maybe_unused]] const ssize_t written =
        ::write(writeEnd, &byte, 1); // a full pipe wakes the event loop too
}

int openPipe(std::array<int, 2>& pipe) {
    if (::pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        fatal("cannot create the pipe for the signals");
    return pipe[0];
}

void handleSignals(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals)
        ::sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals() : m_notifier(openPipe(m_pipe), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::received);
    writeEnd = m_pipe[1];
    handleSignals(writeToPipe);
}

TerminationSignals::~TerminationSignals() {
    handleSignals(SIG_DFL);
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

} // namespace complexion
