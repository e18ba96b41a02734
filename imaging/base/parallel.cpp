// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/parallel.h"

#include "imaging/base/task_recording.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <ctime>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace complexion {

namespace {

/// One call of parallelFor, on its caller's stack. The pool's mutex guards what is neither const nor atomic.
struct Job {
    Job(const std::function<void(int)>& calls, int callCount) : body(calls), count(callCount) {}

    const std::function<void(int)>& body;
    const int count;
    std::atomic<int> next = 0;
    int openSlots = 0; // how many more threads may join
    int helpers = 0;   // how many have joined and not left yet
    std::condition_variable helpersDone;
    std::exception_ptr failure;
    Job* nextInQueue = nullptr;
};

/// Worker threads, one fewer than there are cores. The caller of parallelFor always works on its own job and
/// waits only for threads that have joined it. So nested calls cannot deadlock, and a call is never slower
/// than its caller alone.
class ThreadPool {
public:
    /// Never destroyed: its threads may still wait for work while static objects are destroyed.
    static ThreadPool& instance() {
        static auto& pool = *new ThreadPool;
        return pool;
    }

    /// Whether the threads belong to this process; a forked child has none of them.
    bool isOurs() const { return m_process == getpid(); }

    void run(Job& job, int helpers) {
        {
            const std::scoped_lock lock(m_mutex);
            addThreads(helpers);
            job.openSlots = std::min(helpers, m_threads);
            if (job.openSlots > 0)
                enqueue(job);
        }
        for (int i = 0; i < helpers; ++i)
            m_wake.notify_one();
        work(job);
        std::unique_lock lock(m_mutex);
        dequeue(job);
        job.helpersDone.wait(lock, [&job] { return job.helpers == 0; });
    }

private:
    /// Grows the pool to `wanted` threads, or to fewer if memory or threads run out.
    void addThreads(int wanted) {
        try {
            for (; m_threads < wanted; ++m_threads)
                std::thread([this] { help(); }).detach();
        } catch (const std::exception&) {
            return; // the next call tries again
        }
    }

    void enqueue(Job& job) {
        Job** end = &m_queue;
        while (*end)
            end = &(*end)->nextInQueue;
        *end = &job;
    }

    void dequeue(const Job& job) {
        for (Job** link = &m_queue; *link; link = &(*link)->nextInQueue)
            if (*link == &job) {
                *link = job.nextInQueue;
                return;
            }
    }

    /// The loop that each worker thread runs.
    [[noreturn]] void help() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_wake.wait(lock, [this] { return m_queue != nullptr; });
            Job& job = *m_queue;
            ++job.helpers;
            if (--job.openSlots == 0)
                dequeue(job);
            lock.unlock();
            work(job);
            lock.lock();
            if (--job.helpers == 0)
                job.helpersDone.notify_one();
        }
    }

    void work(Job& job) {
        try {
            for (int i = job.next++; i < job.count; i = job.next++)
                job.body(i);
        } catch (...) {
            job.next = job.count;
            const std::scoped_lock lock(m_mutex);
            job.failure = std::current_exception();
        }
    }

    const pid_t m_process = getpid();
    std::mutex m_mutex;
    std::condition_variable m_wake;
    Job* m_queue = nullptr; // jobs with open slots, oldest first
    int m_threads = 0;
};

thread_local int freeCores = 0;
thread_local TaskRecording* recording = nullptr;

} // namespace

OneCoreFree::OneCoreFree() {
    ++freeCores;
}

OneCoreFree::~OneCoreFree() {
    --freeCores;
}

double TaskRecording::processorSeconds() {
    constexpr double kNanosecond = 1e-9;
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * kNanosecond;
}

TaskRecording::TaskRecording() {
    recording = this;
}

TaskRecording::~TaskRecording() {
    recording = nullptr;
}

void TaskRecording::run(int count, const std::function<void(int)>& body) {
    if (m_isInTask) {
        for (int i = 0; i < count; ++i)
            body(i);
        return;
    }
    std::vector<double> seconds;
    m_isInTask = true;
    for (int i = 0; i < count; ++i) {
        const double begin = processorSeconds();
        body(i);
        seconds.push_back(processorSeconds() - begin);
    }
    m_isInTask = false;
    m_calls.push_back(std::move(seconds));
}

int coreCount() {
    // Asked once: the standard library reads a file for it.
    static const auto count = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    return count;
}

void parallelFor(int count, const std::function<void(int)>& body) {
    if (recording) {
        recording->run(count, body);
        return;
    }
    const int threads = std::min(count, coreCount() - std::min(freeCores, 1));
    if (threads <= 1 || !ThreadPool::instance().isOurs()) {
        for (int i = 0; i < count; ++i)
            body(i);
        return;
    }
    Job job(body, count);
    ThreadPool::instance().run(job, threads - 1);
    if (job.failure)
        std::rethrow_exception(job.failure);
}

} // namespace complexion
