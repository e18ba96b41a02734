// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/reader_execution.h"

#include <spawn.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <string_view>

namespace complexion {

namespace {

constexpr char kArgument[] = "--serve-as-reader";
constexpr int kControl = 3;

bool s_canServe = false;

/// What posix_spawn needs, released at the end of the scope.
struct SpawnSettings {
    SpawnSettings() {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawnattr_destroy(&attributes);
        ::posix_spawn_file_actions_destroy(&actions);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

} // namespace

void serveIfExecutedAsReader(int argumentCount, char* const* arguments, ChildWork work) {
    s_canServe = true;
    if (argumentCount == 2 && std::string_view(arguments[1]) == kArgument)
        forkChildren(Descriptor(kControl), work, {.hasFileRules = true, .hasCallFilter = true});
}

Result<pid_t> executeReader(const Descriptor& control) {
    if (!s_canServe)
        return Error{"the reader process is gone", ErrorKind::CannotRead};
    SpawnSettings settings;
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&settings.attributes, &none);
    ::posix_spawnattr_setflags(&settings.attributes, POSIX_SPAWN_SETSIGMASK);
    ::posix_spawn_file_actions_adddup2(&settings.actions, control.get(), kControl);
    // The file that this program runs, even if an update has replaced it by now.
    constexpr const char* kThisProgram = "/proc/self/exe";
    std::array<char, sizeof kArgument> argument = {};
    std::memcpy(argument.data(), kArgument, sizeof kArgument);
    char name[] = "complexion-read";
    char* const arguments[] = {name, argument.data(), nullptr};
    pid_t process = 0;
    const int failure =
        ::posix_spawn(&process, kThisProgram, &settings.actions, &settings.attributes, arguments, environ);
    if (failure != 0)
        return Error{std::strerror(failure), ErrorKind::CannotRead};
    return process;
}

} // namespace complexion
