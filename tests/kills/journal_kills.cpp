// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: journal_kills [KILLS]
//
// Repeatedly kills a process that edits a photo at random, at random moments, alternating between two photos.
// After each kill, checks that the journal has every step that the process had finished, except for steps of
// the last 100 milliseconds while the journal's file was being created; that the resumed picture, history and
// position equal those of a session that was never killed (the oracle); that the photo is unchanged; and that
// only the journal, without stray bytes, and the private folder are left on the disk. The next start must
// remove that folder.
#include "app/private_folder.h"
#include "editor/edit_session.h"
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <unistd.h>

namespace complexion {

namespace {

constexpr int kKills = 1000;
constexpr PixelSize kSize{160, 120};
constexpr int kMaxRadius = 12;
constexpr std::int64_t kMaxDelay = 150'000;         // microseconds from the start to the kill
constexpr std::int64_t kMaxUnwritten = 100'000'000; // nanoseconds from a step until it is in a new file
constexpr std::size_t kMaxTornBytes = 128;          // longer than any record

[[noreturn]] void fail(const std::string& what) {
    std::cerr << "journal_kills: " << what << '\n';
    std::_Exit(1);
}

void require(bool condition, const std::string& what) {
    if (!condition)
        fail(what);
}

class DriverPlatform : public Platform {
public:
    explicit DriverPlatform(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    std::uint64_t monotonicNanoseconds() override { return 0; }
    /// The wall clock, at least 2 ms after the previous call, as states are named by the millisecond. Never
    /// ahead of the wall clock, since the next process continues this one's work.
    double secondsSince1970() override {
        std::this_thread::sleep_until(m_previous + std::chrono::milliseconds(2));
        m_previous = std::chrono::system_clock::now();
        return std::chrono::duration<double>(m_previous.time_since_epoch()).count();
    }
    std::filesystem::path temporaryDirectory() override { return m_folder; }
    void openAddress(const std::string&) override {}
    void terminate() override {}

private:
    std::filesystem::path m_folder;
    std::chrono::system_clock::time_point m_previous = std::chrono::system_clock::now();
};

std::int64_t nanosecondsNow() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// What a process reported before it was killed.
struct Run {
    std::int64_t steps = 0;
    std::int64_t firstAge = 0; // nanoseconds from the first step's end to the kill
};

/// Performs random edits that depend only on the random numbers and the session.
class Worker {
public:
    Worker(EditSession& session, int effect) : m_session(session), m_effect(effect) {}

    /// Performs one action; returns whether it was a step of the history.
    bool act(std::mt19937& random) {
        const auto upTo = [&random](int limit) {
            return static_cast<int>(random() % static_cast<std::uint32_t>(limit));
        };
        const int what = upTo(12);
        if (what < 2)
            return m_session.undo();
        if (what == 2)
            return m_session.redo();
        if (what == 3) {
            const int effect = upTo(9);
            m_session.recordEffect(effect);
            return effect != std::exchange(m_effect, effect);
        }
        m_session.setSettings({.radius = 1 + upTo(kMaxRadius),
                               .colorType = upTo(2),
                               .customColor = {upTo(256) / 255.0, upTo(256) / 255.0, upTo(256) / 255.0},
                               .threshold = static_cast<float>(upTo(30)),
                               .style = static_cast<RepairStyle>(upTo(2))});
        const Point place{upTo(kSize.width * 4) / 4.0, upTo(kSize.height * 4) / 4.0};
        const EditSession::Snapshot taken = *m_session.beginRepair();
        const Result<Repaired> repaired = Repair::of(taken.settings).applyTo(taken.image, place);
        m_session.recordRepair(taken, place);
        m_session.setImage(repaired->image);
        m_session.pushState();
        return true;
    }

    int effect() const { return m_effect; }

private:
    EditSession& m_session;
    int m_effect;
};

/// Opens the photo and begins its history.
void open(EditSession& session, const std::filesystem::path& photo) {
    const auto opened = identify(photo);
    session.open({decoded(photo)}, photo, opened);
    session.beginHistory();
}

/// Opens the journal's photo and replays its steps, as the window does. Returns the effect.
int continueWork(EditSession& session, const AbandonedJournal& work) {
    require(matchPhoto(work.contents.photo) == PhotoMatch::Same, "the photo is not recognised");
    open(session, work.contents.photo.path);
    const std::optional<int> effect = session.replay(work.contents.steps);
    require(effect.has_value(), "a step cannot be repeated");
    session.resumeJournal(work, *identify(work.contents.photo.path));
    while (session.writeNextState()) {
    }
    return *effect;
}

class Kills {
public:
    explicit Kills(int count) : m_count(count) {
        for (const char* folder : {"photos", "temporary", "home"})
            std::filesystem::create_directory(m_root.path() / folder);
        ::setenv("TMPDIR", (m_root.path() / "temporary").c_str(), 1);
        ::setenv("HOME", (m_root.path() / "home").c_str(), 1);
        ::unsetenv("XDG_STATE_HOME");
        m_journals = *journalFolder();
        for (const char* name : {"a.jpg", "b.png"}) {
            m_photos.push_back(m_root.path() / "photos" / name);
            require(ImageTools::SaveImage(noise(kSize, static_cast<std::uint32_t>(m_photos.size())),
                                          m_photos.back(), m_photos.back().extension().string().substr(1)),
                    "a photo cannot be written");
            m_bytes.push_back(contentsOf(m_photos.back()));
        }
    }

    void run() {
        for (m_round = 0; m_round < m_count; ++m_round) {
            const auto seed = static_cast<std::uint32_t>(m_random());
            if (!m_isContinued)
                startNewWork();
            const Run run = workUntilKilled(seed);
            checkFiles();
            checkWork(seed, run);
        }
        std::cout << m_count << " kills; " << m_steps << " steps; " << m_unwritten
                  << " kills before the journal's file was created, at most "
                  << static_cast<double>(m_oldestUnwritten) * 1e-6
                  << " ms after the first step, no steps lost otherwise; " << m_unreported
                  << " more journaled but not yet finished; " << m_resumed << " sessions resumed, "
                  << m_maxSteps << " steps at most; " << m_early << " kills before the first step\n";
    }

private:
    const std::filesystem::path& photo() const { return m_photos[static_cast<std::size_t>(m_photo)]; }

    /// Switches to the other photo and starts a new oracle, a session that is never killed.
    void startNewWork() {
        m_photo = 1 - m_photo;
        m_oracle.emplace(m_oraclePlatform);
        open(*m_oracle, photo());
        m_effect = 0;
        m_done = 0;
    }

    Run workUntilKilled(std::uint32_t seed) {
        int pipe[2];
        require(::pipe2(pipe, O_CLOEXEC) == 0, "pipe2 failed");
        const std::int64_t delay = std::uniform_int_distribution<std::int64_t>(0, kMaxDelay)(m_random);
        const pid_t child = ::fork();
        require(child >= 0, "fork failed");
        if (child == 0)
            work(seed, pipe[1]);
        ::close(pipe[1]);
        const timespec wait{.tv_sec = 0, .tv_nsec = delay * 1000};
        ::nanosleep(&wait, nullptr);
        const std::int64_t killed = nanosecondsNow();
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        require(WIFSIGNALED(status), "the process ended before it was killed");
        Run run;
        for (std::int64_t end = 0; ::read(pipe[0], &end, sizeof end) == sizeof end; ++run.steps)
            if (run.steps == 0)
                run.firstAge = killed - end;
        ::close(pipe[0]);
        return run;
    }

    [[noreturn]] void work(std::uint32_t seed, int report) {
        const Result<PrivateFolder> folder = PrivateFolder::create();
        require(static_cast<bool>(folder), "no private folder");
        DriverPlatform platform(folder->path());
        EditSession session(platform);
        session.setJournal(std::make_unique<Journal>(m_journals));
        std::vector<AbandonedJournal> works = AbandonedJournal::findIn(m_journals);
        int effect = 0;
        if (works.empty())
            open(session, photo());
        else
            effect = continueWork(session, works[0]);
        works.clear();
        Worker worker(session, effect);
        std::mt19937 random(seed);
        for (;;)
            if (worker.act(random)) {
                const std::int64_t end = nanosecondsNow();
                require(::write(report, &end, sizeof end) == sizeof end, "a step cannot be reported");
            }
    }

    void checkFiles() const {
        for (std::size_t i = 0; i < m_photos.size(); ++i)
            require(contentsOf(m_photos[i]) == m_bytes[i], "a photo was changed");
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_root.path())) {
            if (!entry.is_regular_file() || std::ranges::count(m_photos, entry.path()))
                continue;
            const std::string within = entry.path().lexically_relative(m_root.path()).string();
            if (within.starts_with("temporary/complexion-"))
                continue;
            require(within.starts_with("home/.local/state/complexion/") && within.ends_with(".journal"),
                    "an unexpected file outside the private folder: " + within);
            const std::string bytes = contentsOf(entry.path());
            const ParsedJournal parsed =
                parseJournal(ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
            require(parsed.kind != JournalKind::Foreign &&
                        bytes.size() - parsed.contents.length < kMaxTornBytes,
                    "the journal has bytes that are not a record");
        }
    }

    /// Resumes the work as the next start would, and compares it with the oracle.
    void checkWork(std::uint32_t seed, const Run& run) {
        const std::vector<std::string> before = filesIn(m_root.path() / "temporary");
        const Result<PrivateFolder> folder = PrivateFolder::create();
        require(static_cast<bool>(folder), "no private folder");
        for (const std::string& name : before)
            require(!std::filesystem::exists(m_root.path() / "temporary" / name),
                    "the private folder of the killed process was not removed");

        std::vector<AbandonedJournal> works = AbandonedJournal::findIn(m_journals);
        require(works.size() <= 1, "more than one journal");
        const std::int64_t steps = works.empty() ? 0 : std::ssize(works[0].contents.steps);
        m_steps += run.steps;
        if (works.empty() && m_done == 0 && run.steps > 0 && run.firstAge <= kMaxUnwritten) {
            ++m_unwritten;
            m_oldestUnwritten = std::max(m_oldestUnwritten, run.firstAge);
            m_isContinued = false;
            return;
        }
        require(steps >= m_done + run.steps, "a finished step is lost: " + std::to_string(steps) + " of " +
                                                 std::to_string(m_done + run.steps));
        require(steps <= m_done + run.steps + 1, "the journal has more steps than were made");
        m_unreported += steps - m_done - run.steps;
        m_maxSteps = std::max(m_maxSteps, steps);

        Worker worker(*m_oracle, m_effect);
        std::mt19937 random(seed);
        while (m_done < steps)
            m_done += worker.act(random);
        m_effect = worker.effect();
        if (works.empty()) {
            ++m_early;
            m_isContinued = false;
            return;
        }
        ++m_resumed;
        DriverPlatform platform(folder->path());
        EditSession session(platform);
        require(continueWork(session, works[0]) == m_effect, "the effect differs");
        compare(session);
        m_isContinued = m_random() % 3 != 0;
        if (!m_isContinued)
            works[0].file->remove();
    }

    void compare(EditSession& session) {
        require(samePixels(session.image(), m_oracle->image()), "the picture differs");
        require(session.history.position == m_oracle->history.position, "the position differs");
        require(session.history.paths.size() == m_oracle->history.paths.size(),
                "the length of the history differs");
        const std::int64_t position = session.history.position;
        for (std::int64_t i = 0; i < std::ssize(session.history.paths); ++i) {
            const auto state = session.history.moveTo(i);
            const auto expected = m_oracle->history.moveTo(i);
            require(state && expected && samePixels(*state, *expected), "a state differs");
        }
        session.history.moveTo(position);
        m_oracle->history.moveTo(position);
    }

    int m_count;
    TemporaryFolder m_oracleFolder; // first, as the other is created inside it
    TemporaryFolder m_root;
    DriverPlatform m_oraclePlatform{m_oracleFolder.path()};
    std::filesystem::path m_journals;
    std::vector<std::filesystem::path> m_photos;
    std::vector<std::string> m_bytes;
    std::mt19937 m_random{1};

    int m_round = 0;
    int m_photo = 0;
    bool m_isContinued = false;
    std::optional<EditSession> m_oracle;
    int m_effect = 0;
    std::int64_t m_done = 0; // steps of the current work, over all its processes

    std::int64_t m_steps = 0;
    std::int64_t m_unwritten = 0;       // kills before the journal's file was created
    std::int64_t m_oldestUnwritten = 0; // nanoseconds
    std::int64_t m_unreported = 0;
    std::int64_t m_resumed = 0;
    std::int64_t m_maxSteps = 0;
    std::int64_t m_early = 0;
};

} // namespace

} // namespace complexion

int main(int argc, char** argv) {
    complexion::Kills(argc > 1 ? std::atoi(argv[1]) : complexion::kKills).run();
}
