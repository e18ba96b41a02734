// SPDX-License-Identifier: GPL-3.0-or-later

// When the journal writes and flushes, and what it must not wait for.
#include "editor/journal.h"
#include "tests/fakes/eventually.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <ctime>
#include <future>
#include <mutex>

namespace complexion {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kMaxFlushDelay = 100ms;
constexpr double kMaxAppendSeconds = 1e-4;

EditStep step(int index) {
    return MoveStep{index};
}

/// Blocks threads in `pass` while it is closed.
class Gate {
public:
    void close() { set(false); }
    void open() { set(true); }
    /// The number of calls of `pass`, blocked or not.
    int arrivals() const { return m_arrivals; }
    /// Returns false after a minute, which fails the test.
    bool pass() {
        std::unique_lock lock(m_mutex);
        ++m_arrivals;
        return m_changed.wait_for(lock, 60s, [this] { return m_isOpen; });
    }

private:
    void set(bool isOpen) {
        const std::scoped_lock lock(m_mutex);
        m_isOpen = isOpen;
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOpen = true;
    std::atomic<int> m_arrivals = 0;
};

/// A disk whose file creation and flushes the test can delay, and which records what is written.
struct FakeDisk {
    Gate creation;
    Gate flush;
    std::chrono::milliseconds flushTime = 0ms;

    std::mutex mutex;
    Bytes bytes;
    std::size_t flushed = 0; // bytes written when the last finished flush began
    bool isRemoved = false;
    bool isOpen = false;

    std::vector<EditStep> stepsIn(std::size_t length) {
        const std::scoped_lock lock(mutex);
        return parseJournal(ByteView(bytes).first(length)).contents.steps;
    }
    std::vector<EditStep> written() { return stepsIn(length()); }
    bool isStillOpen() {
        const std::scoped_lock lock(mutex);
        return isOpen;
    }
    std::size_t length() {
        const std::scoped_lock lock(mutex);
        return bytes.size();
    }
    std::size_t flushedLength() {
        const std::scoped_lock lock(mutex);
        return flushed;
    }
};

class FakeStore : public JournalStore {
public:
    explicit FakeStore(FakeDisk& disk) : m_disk(disk) { setOpen(true); }
    ~FakeStore() override { setOpen(false); }

    void truncate(std::size_t length) override {
        const std::scoped_lock lock(m_disk.mutex);
        m_disk.bytes.resize(length);
    }
    bool append(ByteView bytes) override {
        const std::scoped_lock lock(m_disk.mutex);
        m_disk.bytes.insert(m_disk.bytes.end(), bytes.begin(), bytes.end());
        return true;
    }
    void sync() override {
        const std::size_t covered = m_disk.length();
        std::this_thread::sleep_for(m_disk.flushTime);
        EXPECT_TRUE(m_disk.flush.pass());
        const std::scoped_lock lock(m_disk.mutex);
        m_disk.flushed = covered;
    }
    void remove() override {
        const std::scoped_lock lock(m_disk.mutex);
        m_disk.isRemoved = true;
    }

private:
    void setOpen(bool isOpen) {
        const std::scoped_lock lock(m_disk.mutex);
        m_disk.isOpen = isOpen;
    }

    FakeDisk& m_disk;
};

class JournalWriting : public testing::Test {
protected:
    JournalWriting() {
        system.createFile = [this](const std::filesystem::path&) {
            EXPECT_TRUE(disk.creation.pass());
            return std::make_shared<FakeStore>(disk);
        };
        system.hashPhoto = [](const std::filesystem::path&, const FileIdentity&,
                              const std::function<bool()>&) { return std::nullopt; };
    }

    void begin() {
        journal.emplace("unused", system);
        journal->begin("photo.jpg", {});
    }
    bool eventuallyFlushed() {
        return eventually([this] { return disk.flushedLength() == disk.length() && disk.length() > 0; });
    }

    FakeDisk disk;
    Journal::System system;
    std::optional<Journal> journal;
};

TEST_F(JournalWriting, StepsDoNotWaitForTheFileAndKeepTheirOrder) {
    disk.creation.close();
    begin();
    std::vector<EditStep> steps;
    for (int i = 0; i < 100; ++i) {
        steps.push_back(step(i));
        journal->append(steps.back()); // must not block
        if (i == 50) {
            EXPECT_TRUE(eventually([this] { return disk.creation.arrivals() == 1; }));
        }
    }
    EXPECT_EQ(disk.length(), 0U);
    disk.creation.open();
    EXPECT_TRUE(eventually([&] { return disk.written() == steps; }));
    EXPECT_EQ(disk.creation.arrivals(), 1);
}

// So that a kill after `append` loses no step.
TEST_F(JournalWriting, OnceTheFileExistsAStepIsInItWhenAppendReturns) {
    begin();
    journal->append(step(0));
    ASSERT_TRUE(eventually([this] { return disk.written().size() == 1; }));
    disk.flush.close();
    for (int i = 1; i < 100; ++i) {
        journal->append(step(i));
        EXPECT_EQ(disk.written().size(), static_cast<std::size_t>(i) + 1);
    }
    disk.flush.open();
}

TEST_F(JournalWriting, AFlushWaitsOnlyForThePreviousOne) {
    disk.flush.close();
    begin();
    journal->append(step(0));
    ASSERT_TRUE(eventually([this] { return disk.flush.arrivals() == 1; }));
    journal->append(step(1));
    journal->append(step(2));
    EXPECT_EQ(disk.flushedLength(), 0U);
    disk.flush.open();
    EXPECT_TRUE(eventuallyFlushed());
    EXPECT_EQ(disk.flush.arrivals(), 2) << "one flush covers both steps";
}

TEST_F(JournalWriting, AStepIsFlushedWithin100Milliseconds) {
    disk.flushTime = 10ms; // the slowest flush on the measured disks
    begin();
    for (int i = 0; i < 20; ++i) {
        journal->append(step(i));
        const Clock::time_point appended = Clock::now();
        EXPECT_TRUE(eventually(
            [&] { return disk.stepsIn(disk.flushedLength()).size() == static_cast<std::size_t>(i) + 1; }));
        EXPECT_LT(Clock::now() - appended, kMaxFlushDelay) << i;
        std::this_thread::sleep_for(std::chrono::milliseconds(3 * (i % 5)));
    }
}

// For example, of a photo on a file system that no longer answers.
TEST_F(JournalWriting, AHashThatNeverEndsDelaysNothing) {
    const auto gate = std::make_shared<Gate>();
    gate->close();
    std::promise<void> ended;
    system.hashPhoto = [gate, &ended](const std::filesystem::path&, const FileIdentity&,
                                      const std::function<bool()>& isWanted) {
        EXPECT_TRUE(gate->pass());
        EXPECT_FALSE(isWanted());
        ended.set_value();
        return std::optional(PhotoHash{});
    };
    begin();
    journal->append(step(0));
    ASSERT_TRUE(eventually([&] { return gate->arrivals() == 1; }));
    journal->append(step(1));
    EXPECT_TRUE(eventuallyFlushed());
    journal.reset();
    EXPECT_FALSE(disk.isOpen) << "another process can resume it";
    const std::size_t length = disk.length();
    gate->open();
    ended.get_future().wait();
    EXPECT_EQ(disk.length(), length);
}

TEST_F(JournalWriting, TheEndWaitsUntilAllStepsAreFlushed) {
    disk.creation.close();
    begin();
    journal->append(step(0));
    journal->append(step(1));
    auto end = std::async(std::launch::async, [this] { journal.reset(); });
    EXPECT_EQ(end.wait_for(20ms), std::future_status::timeout);
    disk.creation.open();
    end.get();
    EXPECT_EQ(disk.stepsIn(disk.flushedLength()).size(), 2U);
}

TEST_F(JournalWriting, ForgettingRemovesAFileThatIsBeingCreated) {
    disk.creation.close();
    begin();
    journal->append(step(0));
    ASSERT_TRUE(eventually([this] { return disk.creation.arrivals() == 1; }));
    auto forgotten = std::async(std::launch::async, [this] { journal->forget(); });
    EXPECT_EQ(forgotten.wait_for(20ms), std::future_status::timeout);
    disk.creation.open();
    forgotten.get();
    EXPECT_TRUE(disk.isRemoved);
    EXPECT_TRUE(eventually([this] { return !disk.isStillOpen(); })) << "a flush may still be using it";
}

double threadSeconds() {
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Measures the CPU time of this thread, which does not depend on other load, with the real disk.
TEST(JournalCost, OfAStepOnTheMainThreadIsATenthOfAMillisecondAtMost) {
    const TemporaryFolder home;
    const std::filesystem::path photo = home.path() / "photo.jpg";
    writeFile(photo, "the bytes of a photo");
    std::vector<double> first;
    std::vector<double> later;
    for (int i = 0; i < 21; ++i) {
        const std::filesystem::path folder = home.path() / std::to_string(i) / "state/complexion";
        Journal journal(folder);
        journal.begin(photo, *identify(photo));
        const auto append = [&journal](std::vector<double>& seconds) {
            const double before = threadSeconds();
            journal.append(RepairStep{});
            seconds.push_back(threadSeconds() - before);
        };
        append(first);
        ASSERT_TRUE(eventually([&] { return !JournalFile::namesIn(folder).empty(); }));
        append(later);
    }
    for (std::vector<double>* seconds : {&first, &later}) {
        std::ranges::sort(*seconds);
        EXPECT_LE(seconds->at(seconds->size() / 2), kMaxAppendSeconds);
    }
    RecordProperty("first", std::to_string(first[first.size() / 2]));
    RecordProperty("later", std::to_string(later[later.size() / 2]));
}

} // namespace

} // namespace complexion
