// SPDX-License-Identifier: GPL-3.0-or-later

// The time from the program's start until its window is shown, relative to an empty window.
#include "benchmarks/portraits.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/base/fatal.h"

#include <csignal>
#include <fstream>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>

namespace complexion::bench {

namespace {

/// The seconds from the start of `program` until it has shown its window. Both programs open the file of
/// their argument at that moment, and the file is watched.
double startSeconds(const char* program) {
    const std::filesystem::path file = folder() / "no photo";
    std::ofstream(file).put('\n');
    const int watch = ::inotify_init1(IN_CLOEXEC);
    if (watch < 0 || ::inotify_add_watch(watch, file.c_str(), IN_OPEN) < 0)
        fatal("cannot watch for the program's window");
    std::string path = program;
    std::string argument = file.string();
    const std::array<char*, 3> arguments = {path.data(), argument.data(), nullptr};
    pid_t child = 0;
    const double start = now();
    if (::posix_spawn(&child, program, nullptr, nullptr, arguments.data(), environ) != 0)
        fatal("cannot start the program");
    alignas(inotify_event) std::array<std::byte, 4096> event;
    const bool isOpened = ::read(watch, event.data(), event.size()) > 0;
    const double seconds = now() - start;
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(watch);
    if (!isOpened)
        fatal("the program did not show its window");
    return seconds;
}

} // namespace

void addStartRow() {
    addRow({.name = "start", .goal = atMost(1.5), .rounds = 15, .prepare = []() -> Round {
                return [](Samples& samples) {
                    const double reference = startSeconds(EMPTY_WINDOW_PROGRAM);
                    samples.add(startSeconds(COMPLEXION_PROGRAM), reference);
                };
            }});
}

} // namespace complexion::bench
