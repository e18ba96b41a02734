// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/desktop_trash.h"

#include "editor/user_folder.h"
#include "imaging/base/descriptor.h"
#include "imaging/base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <iterator>
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

/// The status of the file itself, not of what a symbolic link refers to; nothing if it does not exist.
std::optional<struct stat> statusOf(const fs::path& path) {
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return status;
}

std::optional<dev_t> deviceOf(const fs::path& path) {
    const std::optional<struct stat> status = statusOf(path);
    if (!status)
        return std::nullopt;
    return status->st_dev;
}

/// Creates a folder with mode 0700 unless it exists.
bool makeFolder(const fs::path& path) {
    return ::mkdir(path.c_str(), kPrivateFolder) == 0 || errno == EEXIST;
}

/// Writes a new file. On failure returns false with errno set (EEXIST: the name is taken) and leaves no file.
bool writeNew(const fs::path& path, const std::string& text) {
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file)
        return false;
    const bool isWritten = ::write(file.get(), text.data(), text.size()) == std::ssize(text);
    if (file.close() && isWritten)
        return true;
    ::unlink(path.c_str());
    errno = EIO;
    return false;
}

/// What the file name gets on the n-th try to find a free one: nothing, ".2", ".3" …
std::string suffixOfTry(int n) {
    if (n == 1)
        return {};
    return "." + std::to_string(n);
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
        const fs::path name =
            nameWithSuffix(original.filename(), suffixOfTry(i), files, kInfoExtension.size());
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

/// The home trash, created if missing; nothing if it is not on `device`.
std::optional<fs::path> homeTrash(dev_t device) {
    const std::optional<fs::path> data = userFolder("XDG_DATA_HOME", ".local/share");
    if (!data)
        return std::nullopt;
    fs::path trash = *data / "Trash";
    fs::path existing = trash;
    while (!deviceOf(existing) && existing.has_relative_path())
        existing = existing.parent_path();
    if (deviceOf(existing) != device)
        return std::nullopt;
    std::error_code error;
    fs::create_directories(*data, error);
    if (!makeFolder(trash))
        return std::nullopt;
    return trash;
}

/// The topmost ancestor of `folder` on `device`, the file system that contains it.
fs::path topOf(fs::path folder, dev_t device) {
    while (folder.has_relative_path() && deviceOf(folder.parent_path()) == device)
        folder = folder.parent_path();
    return folder;
}

/// Whether this is a folder in which nobody can replace another user's files: not a symbolic link, and with
/// the sticky bit.
bool isSharedFolder(const fs::path& path) {
    const std::optional<struct stat> status = statusOf(path);
    return status && S_ISDIR(status->st_mode) && (status->st_mode & S_ISVTX) != 0;
}

/// Whether this is a folder of this user, and not a symbolic link.
bool isOwnFolder(const fs::path& path) {
    const std::optional<struct stat> status = statusOf(path);
    return status && S_ISDIR(status->st_mode) && status->st_uid == ::getuid();
}

/// The trash at the top of a file system: inside the administrator's shared folder if there is one, otherwise
/// the user's own folder.
std::optional<fs::path> topTrash(const fs::path& top) {
    const std::string user = std::to_string(::getuid());
    const fs::path shared = top / ".Trash";
    if (fs::path trash = shared / user; isSharedFolder(shared) && makeFolder(trash))
        return trash;
    fs::path own = top / (".Trash-" + user);
    if (!makeFolder(own) || !isOwnFolder(own))
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
    const fs::path top = topOf(folder, *device);
    const std::optional<fs::path> trash = topTrash(top);
    return trash && moveInto(*trash, file, origin, origin.lexically_relative(top));
}

} // namespace complexion
