// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sys/fsuid.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace complexion {

namespace {

constexpr const char* kParentVariable = "COMPLEXION_TEST_PARENT_FOLDER";
constexpr unsigned kNobody = 65534;

} // namespace

TemporaryFolder::TemporaryFolder() {
    const char* parent = std::getenv(kParentVariable);
    m_parent = parent ? parent : "";
    const std::filesystem::path within =
        parent ? std::filesystem::path(parent) : std::filesystem::temp_directory_path();
    std::string name = within / "complexion_test_XXXXXX";
    if (!mkdtemp(name.data()))
        throw std::filesystem::filesystem_error("mkdtemp", name, {errno, std::generic_category()});
    m_path = name;
    // Readable by all: ReadOnly switches to another user.
    std::filesystem::permissions(m_path, std::filesystem::perms(0755));
    setenv(kParentVariable, m_path.c_str(), 1);
}

TemporaryFolder::~TemporaryFolder() {
    if (m_parent.empty())
        unsetenv(kParentVariable);
    else
        setenv(kParentVariable, m_parent.c_str(), 1);
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> filesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

ReadOnly::ReadOnly(std::filesystem::path folder)
    : m_folder(std::move(folder)), m_before(std::filesystem::status(m_folder).permissions()) {
    std::filesystem::permissions(m_folder, std::filesystem::perms(0555));
    // Root ignores permissions, so this thread accesses files as another user.
    if (geteuid() == 0) {
        setfsgid(kNobody);
        setfsuid(kNobody);
    }
}

ReadOnly::~ReadOnly() {
    if (geteuid() == 0) {
        setfsuid(0);
        setfsgid(0);
    }
    std::error_code ignored;
    std::filesystem::permissions(m_folder, m_before, ignored);
}

bool asNobody(const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (geteuid() == 0 &&
            (::setresgid(kNobody, kNobody, kNobody) != 0 || ::setresuid(kNobody, kNobody, kNobody) != 0 ||
             ::prctl(PR_SET_DUMPABLE, 1) != 0)) // otherwise /proc/self would be unreadable
            ::_exit(EXIT_FAILURE);
        ::_exit(work() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == EXIT_SUCCESS;
}

} // namespace complexion
