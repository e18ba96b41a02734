// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/files.h"

#include "imaging/base/descriptor.h"
#include "imaging/base/no_throw.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <utility>

namespace complexion {

namespace {

Error systemError(ErrorKind kind) {
    return Error{std::strerror(errno), errno == ENOMEM ? ErrorKind::OutOfMemory : kind};
}

/// Writes all parts in few calls: each call costs about as much as copying 100 KB.
bool writeAll(int fd, const FileContents& contents) {
    std::vector<iovec> rest;
    rest.reserve(contents.parts.size());
    for (const auto& part : contents.parts)
        if (!part->empty())
            rest.push_back({const_cast<std::uint8_t*>(part->data()), part->size()}); // only read
    for (std::span<iovec> left = rest; !left.empty();) {
        const ssize_t result =
            ::writev(fd, left.data(), static_cast<int>(std::min(left.size(), std::size_t{IOV_MAX})));
        if (result < 0 && errno == EINTR)
            continue;
        if (result <= 0)
            return false;
        auto written = static_cast<std::size_t>(result);
        for (; !left.empty() && written >= left.front().iov_len; left = left.subspan(1))
            written -= left.front().iov_len;
        if (written > 0)
            left.front() = {static_cast<std::uint8_t*>(left.front().iov_base) + written,
                            left.front().iov_len - written};
    }
    return true;
}

/// Reads into `bytes` from `position` on, and shrinks it to what was read.
bool readInto(int fd, Bytes& bytes, std::size_t position) {
    while (position < bytes.size()) {
        const ssize_t got = ::read(fd, bytes.data() + position, bytes.size() - position);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return false;
        if (got == 0)
            break;
        position += static_cast<std::size_t>(got);
    }
    bytes.resize(position);
    return true;
}

mode_t defaultFileMode() {
    // The umask can only be read by setting it. No other thread creates files at the same time.
    const mode_t mask = ::umask(0077);
    ::umask(mask);
    return 0666 & ~mask;
}

/// The permission bits of a new file of `group`, all of whose readers must be among `readers`.
mode_t modeFor(const Readers& readers, gid_t group) {
    // If the group differs, each of the new file's two classes may have members of both old ones.
    const bool both = readers.everybodyInGroup && readers.allOthers;
    const bool isSameGroup = readers.group == group;
    mode_t mode = S_IRWXU;
    if (isSameGroup ? readers.everybodyInGroup : both)
        mode |= S_IRWXG;
    if (isSameGroup ? readers.allOthers : both)
        mode |= S_IRWXO;
    return mode;
}

std::filesystem::path folderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

/// A file being written beside its target. Where the file system supports it, the file has no name until it
/// is complete, so that a killed process leaves nothing behind. Deleted by the destructor unless it was
/// moved.
class NewFile {
public:
    explicit NewFile(const std::filesystem::path& folder)
        : m_name((folder / kNamePattern).string()), m_file(openUnnamed(folder)), m_isNamed(!m_file) {
        if (m_isNamed)
            m_file = Descriptor(::mkostemp(m_name.data(), O_CLOEXEC));
        m_isNamed = m_isNamed && m_file;
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (m_isNamed)
            ::unlink(m_name.c_str());
    }
    explicit operator bool() const { return static_cast<bool>(m_file); }

    bool write(const FileContents& contents, const std::optional<Readers>& readers) {
        if (contents.size() > 0) {
            // Preallocation is faster and detects a full disk early. Not every file system supports it.
            const int reserved = ::posix_fallocate(m_file.get(), 0, static_cast<off_t>(contents.size()));
            if (reserved == ENOSPC || reserved == EFBIG)
                return false;
        }
        return writeAll(m_file.get(), contents) && setMode(readers);
    }

    bool moveTo(const std::filesystem::path& path) {
        // File systems that report lost data only on close do not support files without a name.
        if (m_isNamed ? !m_file.close() : !linkToName())
            return false;
        if (::rename(m_name.c_str(), path.c_str()) != 0)
            return false;
        m_isNamed = false;
        return true;
    }

private:
    // Short, as a name derived from the target's could exceed the file system's maximum.
    static constexpr const char* kNamePattern = ".cx-XXXXXX";
    static constexpr std::size_t kRandomLetters = 6; // at its end
    static constexpr const char* kOpenFiles = "/proc/self/fd/";

    static int openUnnamed(const std::filesystem::path& folder) {
        // Without /proc the file could not be linked to a name.
        return ::access(kOpenFiles, F_OK) == 0
                   ? ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR)
                   : -1;
    }

    bool setMode(const std::optional<Readers>& readers) {
        mode_t mode = defaultFileMode();
        struct stat status = {};
        if (readers && ::fstat(m_file.get(), &status) != 0)
            return false;
        if (readers)
            mode &= modeFor(*readers, status.st_gid);
        return ::fchmod(m_file.get(), mode) == 0;
    }

    /// linkat() cannot replace a file, so even a file without a name needs one before it is moved.
    bool linkToName() {
        const std::string self = kOpenFiles + std::to_string(m_file.get());
        const std::string pattern = m_name;
        std::random_device random;
        do {
            m_name = pattern;
            for (std::size_t i = m_name.size() - kRandomLetters; i < m_name.size(); ++i)
                m_name[i] = static_cast<char>('a' + random() % 26);
            m_isNamed = ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, m_name.c_str(), AT_SYMLINK_FOLLOW) == 0;
        } while (!m_isNamed && errno == EEXIST);
        return m_isNamed;
    }

    std::string m_name;
    Descriptor m_file;
    bool m_isNamed;
};

} // namespace

std::uint64_t FileContents::size() const {
    return std::accumulate(parts.begin(), parts.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const auto& part) { return sum + part->size(); });
}

Bytes FileContents::joined() const {
    Bytes bytes;
    bytes.reserve(size());
    for (const auto& part : parts)
        bytes.insert(bytes.end(), part->begin(), part->end());
    return bytes;
}

Result<OpenFile> openFile(const std::filesystem::path& path, bool (*isAccepted)(ByteView start)) {
    // Without O_NONBLOCK, opening a named pipe would wait for a writer.
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return systemError(ErrorKind::CannotRead);
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return systemError(ErrorKind::CannotRead);
    if (!S_ISREG(status.st_mode))
        return Error{"not a regular file", ErrorKind::CannotRead};
    if (status.st_size > kMaxFile)
        return Error{"a file of impossible length", ErrorKind::TooLarge};
    const auto length = static_cast<std::size_t>(status.st_size);
    Bytes start(isAccepted ? std::min(length, kSignatureBytes) : 0);
    if (!readInto(file.get(), start, 0))
        return systemError(ErrorKind::CannotRead);
    if (isAccepted && !isAccepted(start))
        return Error{"a file of another kind", ErrorKind::NotAPicture};
    return OpenFile{.descriptor = std::move(file), .length = length, .start = std::move(start)};
}

Result<Bytes> readWhole(OpenFile file) {
    Bytes bytes = std::move(file.start);
    const std::size_t start = bytes.size();
    bytes.resize(file.length);
    if (!readInto(file.descriptor.get(), bytes, start))
        return systemError(ErrorKind::CannotRead);
    return bytes;
}

Result<Bytes> readFile(const std::filesystem::path& path, bool (*isAccepted)(ByteView start)) {
    COMPLEXION_TRY(OpenFile file, openFile(path, isAccepted));
    return readWhole(std::move(file));
}

std::optional<Readers> readersOf(const std::filesystem::path& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    const bool hasList = ::getxattr(path.c_str(), "system.posix_acl_access", nullptr, 0) > 0;
    return Readers{.everybodyInGroup = (status.st_mode & S_IRGRP) != 0,
                   .allOthers = (status.st_mode & S_IROTH) != 0,
                   .group = hasList ? std::nullopt : std::optional(status.st_gid)};
}

Result<Done> writeFileAtomically(const std::filesystem::path& path, const FileContents& contents,
                                 const std::optional<Readers>& readers) {
    return withoutThrowing([&]() -> Result<Done> {
        NewFile file(folderOf(path));
        if (!file || !file.write(contents, readers) || !file.moveTo(path))
            return systemError(ErrorKind::CannotWrite);
        return Done();
    });
}

bool flushToDisk(const std::filesystem::path& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file || ::fsync(file.get()) != 0)
        return false;
    const Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY));
    if (folder)
        return ::fsync(folder.get()) == 0;
    // A folder without read permission cannot be opened: flush the whole file system.
    return errno == EACCES && ::syncfs(file.get()) == 0;
}

bool moveWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // The file system cannot do that atomically: reserve the name with an empty file.
    const Descriptor place(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!place)
        return false;
    if (::rename(from.c_str(), to.c_str()) == 0)
        return true;
    const int error = errno;
    ::unlink(to.c_str());
    errno = error;
    return false;
}

std::filesystem::path nameWithSuffix(const std::filesystem::path& name, const std::string& suffix,
                                     const std::filesystem::path& folder, std::size_t spare) {
    constexpr std::size_t kDefaultMaxName = 255;
    constexpr std::size_t kMaxExtension = 32; // a longer one is part of the name
    const long reported = ::pathconf(folder.c_str(), _PC_NAME_MAX);
    const std::size_t maxLength = reported > 0 ? static_cast<std::size_t>(reported) : kDefaultMaxName;
    std::string extension = name.extension().string();
    std::string stem = name.stem().string();
    if (extension.size() > kMaxExtension)
        stem += std::exchange(extension, {});
    const std::size_t taken = suffix.size() + extension.size() + spare;
    const auto continuesSequence = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
    };
    std::size_t length = std::min(stem.size(), maxLength - std::min(maxLength, taken));
    while (length > 0 && length < stem.size() && continuesSequence(stem[length]))
        --length;
    return stem.substr(0, length) + suffix + extension;
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
