// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/desktop_trash.h"

#include "imaging/base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace complexion {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kPrivateFolder = S_IRWXU;
constexpr std::string_view kInfoExtension = ".trashinfo";

/// A path as stored in a .trashinfo file: percent-encoded like a URL, slashes kept.
std::string encoded(const fs::path& path) {
    constexpr std::string_view kPlain = "/-_.~";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : path.string()) {
        const auto value = static_cast<unsigned char>(byte);
        const bool isAlphanumeric =
            (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
        if (isAlphanumeric || kPlain.find(byte) != std::string_view::npos)
            text += byte;
        else
            text.append({'%', kDigits[value >> 4], kDigits[value & 15]});
    }
    return text;
}

/// The local time in the format of DeletionDate in a .trashinfo file.
std::string now() {
    const std::time_t time = std::time(nullptr);
    std::tm local = {};
    std::array<char, 32> text = {};
    ::localtime_r(&time, &local);
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local)};
}

std::optional<dev_t> deviceOf(const fs::path& path) {
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 ? std::optional(status.st_dev) : std::nullopt;
}

/// Creates a folder with mode 0700 unless it exists.
bool makeFolder(const fs::path& path) {
    return ::mkdir(path.c_str(), kPrivateFolder) == 0 || errno == EEXIST;
}

/// Writes a new file. On failure returns false with errno set (EEXIST: the name is taken) and leaves no file.
bool writeNew(const fs::path& path, const std::string& text) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return false;
    const bool isWritten = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (::close(file) == 0 && isWritten)
        return true;
    ::unlink(path.c_str());
    errno = EIO;
    return false;
}

/// Moves `file` into the existing trash folder `trash`. `listedPath` is its original path for the .trashinfo
/// file.
bool moveInto(const fs::path& trash, const fs::path& file, const fs::path& original,
              const fs::path& listedPath) {
    constexpr int kMaxTries = 10'000;
    const fs::path files = trash / "files";
    const fs::path infos = trash / "info";
    if (!makeFolder(files) || !makeFolder(infos))
        return false;
    const std::string info = "[Trash Info]\nPath=" + encoded(listedPath) + "\nDeletionDate=" + now() + "\n";
    for (int i = 1; i <= kMaxTries; ++i) {
        const std::string suffix = i == 1 ? "" : "." + std::to_string(i);
        const fs::path name = nameWithSuffix(original.filename(), suffix, files, kInfoExtension.size());
        // Creating the .trashinfo file reserves the name, as the standard requires.
        const fs::path description = infos / (name.string() + std::string(kInfoExtension));
        if (writeNew(description, info)) {
            if (moveWithoutReplacing(file, files / name))
                return true;
            const int error = errno;
            ::unlink(description.c_str());
            errno = error;
        }
        if (errno != EEXIST)
            return false;
    }
    return false;
}

/// The folder that contains the home trash; nothing if the environment does not name it.
std::optional<fs::path> dataHome() {
    if (const char* const named = std::getenv("XDG_DATA_HOME"); named && *named == '/')
        return fs::path(named);
    const char* const home = std::getenv("HOME");
    return home && *home == '/' ? std::optional(fs::path(home) / ".local/share") : std::nullopt;
}

/// The home trash, created if missing; nothing if it is not on `device`.
std::optional<fs::path> homeTrash(dev_t device) {
    const std::optional<fs::path> data = dataHome();
    if (!data)
        return std::nullopt;
    fs::path existing = *data / "Trash";
    while (!deviceOf(existing) && existing.has_relative_path())
        existing = existing.parent_path();
    std::error_code error;
    if (deviceOf(existing) != device)
        return std::nullopt;
    fs::create_directories(*data, error);
    return makeFolder(*data / "Trash") ? std::optional(*data / "Trash") : std::nullopt;
}

/// The topmost ancestor of `folder` on the same file system.
fs::path topOf(fs::path folder) {
    const std::optional<dev_t> device = deviceOf(folder);
    while (folder.has_relative_path() && deviceOf(folder.parent_path()) == device)
        folder = folder.parent_path();
    return folder;
}

/// The trash at the top of a file system: inside the administrator's shared folder if there is one, otherwise
/// the user's own folder.
std::optional<fs::path> topTrash(const fs::path& top) {
    const std::string user = std::to_string(::getuid());
    struct stat status = {};
    const fs::path shared = top / ".Trash";
    if (::lstat(shared.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0 &&
        makeFolder(shared / user))
        return shared / user;
    fs::path own = top / (".Trash-" + user);
    // Not a symbolic link or a folder of another user.
    if (!makeFolder(own) || ::lstat(own.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != ::getuid())
        return std::nullopt;
    return own;
}

} // namespace

bool moveToTrash(const fs::path& file, const fs::path& original) {
    std::error_code error;
    const fs::path folder = fs::canonical(fs::absolute(original, error).parent_path(), error);
    if (error)
        return false;
    const std::optional<dev_t> device = deviceOf(file);
    if (!device)
        return false;
    const fs::path origin = folder / original.filename();
    if (const std::optional<fs::path> trash = homeTrash(*device);
        trash && moveInto(*trash, file, origin, origin))
        return true;
    const fs::path top = topOf(folder);
    const std::optional<fs::path> trash = topTrash(top);
    return trash && moveInto(*trash, file, origin, origin.lexically_relative(top));
}

} // namespace complexion
