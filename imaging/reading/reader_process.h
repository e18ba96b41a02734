// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/reading/answer_channel.h"
#include "imaging/reading/child_source.h"

#include <atomic>
#include <memory>
#include <mutex>

#include <sys/types.h>

namespace complexion {

class ReaderProcess;

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
        std::shared_ptr<ReaderProcess> process;
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
class ReaderProcess : public std::enable_shared_from_this<ReaderProcess> {
public:
    /// Starts the process, which ends with this one. An error when the system refuses.
    static Result<std::shared_ptr<ReaderProcess>> start(ChildWork work);
    ReaderProcess(const ReaderProcess&) = delete;
    ReaderProcess& operator=(const ReaderProcess&) = delete;
    ~ReaderProcess();

    /// Has a new child do `operation` on the whole file. Safe to call from any thread.
    Result<Reading> begin(std::uint32_t operation, const OpenFile& file, const ReaderLimits& limits);

    /// The reader of this program; null when files are read in the program itself.
    static std::shared_ptr<ReaderProcess> installed() { return s_installed; }
    /// Before the first file is read.
    static void install(std::shared_ptr<ReaderProcess> process) { s_installed = std::move(process); }

private:
    friend class Reading;
    ReaderProcess(pid_t process, Descriptor control) : m_process(process), m_control(std::move(control)) {}
    void end(pid_t child);

    inline static std::shared_ptr<ReaderProcess> s_installed;

    pid_t m_process;
    std::mutex m_mutex; // one request at a time
    Descriptor m_control;
};

} // namespace complexion
