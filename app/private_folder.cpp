// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/private_folder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace complexion {

Result<PrivateFolder> PrivateFolder::create() {
    const char* variable = std::getenv("TMPDIR");
    const std::filesystem::path parent = variable && *variable ? variable : "/var/tmp";
    std::string name = std::filesystem::absolute(parent / "complexion-XXXXXX").string();
    if (!mkdtemp(name.data())) // gives it mode 0700
        return Error{"no temporary folder can be made in " + parent.string() + ": " + std::strerror(errno)};
    return PrivateFolder(name);
}

PrivateFolder::PrivateFolder(PrivateFolder&& other) noexcept : m_path(std::exchange(other.m_path, {})) {}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored; // nobody is left to be told
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, ignored);
}

} // namespace complexion
