// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/answer_channel.h"
#include "imaging/reading/child_source.h"
#include "imaging/reading/fork_server.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace complexion {

/// One child that reads one input. It is killed when its reading is over, whatever it is doing.
class Reading {
public:
    Reading(Reading&& other) noexcept = default;
    Reading& operator=(Reading&&) = delete;
    ~Reading() {
        if (m_child)
            stop();
    }

    AnswerReceiver& answer() { return m_answer; }

    /// Kills the child at once, which ends a `receive` in another thread.
    void stop();

private:
    friend class ReaderProcess;
    struct Child {
        std::shared_ptr<ForkServer> parent;
        pid_t id = 0;
        std::atomic<bool> isEnded = false;
    };
    Reading(std::unique_ptr<Child> child, AnswerReceiver answer)
        : m_child(std::move(child)), m_answer(std::move(answer)) {}

    std::unique_ptr<Child> m_child; // null only after a move
    AnswerReceiver m_answer;
};

/// A small process that forks a confined child for every untrusted file. Start it early, while the program is
/// small and has one thread: a child is a copy of the program at that time, quick to fork and without other
/// photos in its memory.
class ReaderProcess {
public:
    /// Starts a process in forkChildren, with the other end of `control`, when this one has many threads.
    using Launcher = std::function<Result<pid_t>(const Descriptor& control)>;

    /// Starts the process, which ends with this one. An error when the system refuses. If the process ends or
    /// hangs, `replacement` starts another; without one, no file can be read any more. `usable` are the
    /// mechanisms that children may be confined with: tests take some away.
    static Result<std::shared_ptr<ReaderProcess>> start(ChildWork work, Launcher replacement = {},
                                                        Confinement usable = {.hasFileRules = true,
                                                                              .hasCallFilter = true});

    /// Has a new child do `operation` on the whole file. Safe to call from any thread.
    Result<Reading> begin(std::uint32_t operation, const OpenFile& file, const ReaderLimits& limits);

    /// The number of the process.
    pid_t id() { return server()->id(); }

    /// The reader of this program; null when files are read in the program itself.
    static std::shared_ptr<ReaderProcess> installed() { return s_installed; }
    /// Before the first file is read.
    static void install(std::shared_ptr<ReaderProcess> process) { s_installed = std::move(process); }

private:
    ReaderProcess(std::shared_ptr<ForkServer> server, Launcher replacement)
        : m_server(std::move(server)), m_replacement(std::move(replacement)) {}
    std::shared_ptr<ForkServer> server();
    /// The one that replaces `lost`.
    Result<std::shared_ptr<ForkServer>> serverAfter(const std::shared_ptr<ForkServer>& lost);

    inline static std::shared_ptr<ReaderProcess> s_installed;

    std::mutex m_mutex; // guards the next member
    std::shared_ptr<ForkServer> m_server;
    Launcher m_replacement;
};

} // namespace complexion
