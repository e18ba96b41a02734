// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <numeric>
#include <string>

namespace complexion {

namespace {

/// An open file descriptor, closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }
    /// Closes now; false when the system reports that bytes were lost.
    bool close() {
        const int result = ::close(m_fd);
        m_fd = -1;
        return result == 0;
    }

private:
    int m_fd;
};

Error systemError() {
    return Error{std::strerror(errno)};
}

bool writeAll(int fd, ByteView bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

mode_t usualFileMode() {
    // The mask can only be read by setting it; no other thread of this program creates files meanwhile.
    const mode_t mask = ::umask(0077);
    ::umask(mask);
    return 0666 & ~mask;
}

std::filesystem::path folderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

} // namespace

std::uint64_t FileContents::size() const {
    return std::accumulate(parts.begin(), parts.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const auto& part) { return sum + part->size(); });
}

Result<Bytes> readFile(const std::filesystem::path& path) {
    // Without O_NONBLOCK the opening of a named pipe would wait for a writer.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return systemError();
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return systemError();
    if (!S_ISREG(status.st_mode))
        return Error{"not a regular file"};
    Bytes bytes(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return systemError();
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

bool writeFileAtomically(const std::filesystem::path& path, const FileContents& contents) {
    // A short name: one made from the target's could be longer than the file system allows.
    std::string temporary = (folderOf(path) / ".cx-XXXXXX").string();
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return false;
    bool good = true;
    if (contents.size() > 0) {
        // Reserving the space first is faster and finds a full disk early; not every file system can.
        const int reserved = ::posix_fallocate(file.get(), 0, static_cast<off_t>(contents.size()));
        good = reserved != ENOSPC && reserved != EFBIG;
    }
    for (std::size_t i = 0; good && i < contents.parts.size(); ++i)
        good = writeAll(file.get(), *contents.parts[i]);
    good = good && ::fchmod(file.get(), usualFileMode()) == 0;
    good = file.close() && good;
    good = good && ::rename(temporary.c_str(), path.c_str()) == 0;
    if (!good)
        ::unlink(temporary.c_str());
    return good;
}

bool flushToDisk(const std::filesystem::path& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY));
    return file && folder && ::fsync(file.get()) == 0 && ::fsync(folder.get()) == 0;
}

HeldFile::HeldFile(const std::filesystem::path& path)
    : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), m_path(path) {
    if (m_descriptor < 0)
        return;
    const std::filesystem::path held = "/proc/self/fd/" + std::to_string(m_descriptor);
    std::error_code ignored;
    if (std::filesystem::exists(held, ignored))
        m_path = held;
}

HeldFile::~HeldFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

} // namespace complexion
