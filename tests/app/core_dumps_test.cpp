// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/core_dumps.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace complexion {
namespace {

/// Whether a process that crashes after `preparation` leaves a core dump. `folder` is its working folder.
bool leavesCoreDump(const std::filesystem::path& folder, void (*preparation)()) {
    const pid_t child = ::fork();
    if (child == 0) {
        rlimit limit = {};
        ::getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_CORE, &limit);
        if (::chdir(folder.c_str()) == 0) {
            preparation();
            ::signal(SIGABRT, SIG_DFL);
            ::abort();
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    return WCOREDUMP(status);
}

TEST(CoreDumps, AreNotLeft) {
    const TemporaryFolder folder;
    EXPECT_FALSE(leavesCoreDump(folder.path(), forgoCoreDumps));
    EXPECT_TRUE(filesIn(folder.path()).empty());
    if (!leavesCoreDump(folder.path(), [] {}))
        GTEST_SKIP() << "no process leaves a core dump on this system";
}

} // namespace
} // namespace complexion
