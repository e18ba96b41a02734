// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/base/result.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <sys/types.h>

namespace complexion {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The bytes of a file to write, in parts, so that cached bytes need not be copied.
struct FileContents {
    std::vector<std::shared_ptr<const Bytes>> parts;

    void append(Bytes bytes) { parts.push_back(std::make_shared<const Bytes>(std::move(bytes))); }
    std::uint64_t size() const;
    /// All parts concatenated.
    Bytes joined() const;
};

/// Maximum file size in bytes. Longer files are rejected before memory is allocated.
inline constexpr std::int64_t kMaxFile = std::int64_t{2} << 30;
/// Number of leading bytes needed for format detection.
inline constexpr std::size_t kSignatureBytes = 64;

/// A regular file that is open for reading.
struct OpenFile {
    Descriptor descriptor;
    std::size_t length = 0; // when it was opened
    Bytes start;            // what has been read of it
};

/// Opens a regular file of at most kMaxFile bytes. Fails for anything else at `path` (folder, pipe, device),
/// and with NotAPicture if `isAccepted` rejects the first kSignatureBytes bytes.
Result<OpenFile> openFile(const std::filesystem::path& path, bool (*isAccepted)(ByteView start) = nullptr);

/// Reads the whole file.
Result<Bytes> readWhole(OpenFile file);

/// Opens a file as openFile, and reads it.
Result<Bytes> readFile(const std::filesystem::path& path, bool (*isAccepted)(ByteView start) = nullptr);

/// Who may read a file besides its owner.
struct Readers {
    bool everybodyInGroup = true;
    bool allOthers = true;
    /// The file's group; nothing if the file has an access control list, so that the group alone does not
    /// decide.
    std::optional<gid_t> group;
};

/// The readers of the file at `path`; nothing if its attributes cannot be read.
std::optional<Readers> readersOf(const std::filesystem::path& path);

/// Writes to a temporary file beside `path` and renames it to `path`. On failure, what was at `path` is
/// unchanged and no temporary file remains. A new file has the default mode (0666 less the umask), without
/// permissions for anybody who is not among `readers`.
Result<Done> writeFileAtomically(const std::filesystem::path& path, const FileContents& contents,
                                 const std::optional<Readers>& readers = std::nullopt);

/// Flushes the file and its directory entry to disk. False if the system reports an error.
bool flushToDisk(const std::filesystem::path& path);

/// Renames a file to a name that is not in use. On failure returns false, sets errno (EEXIST: the name is in
/// use) and leaves the file where it was.
bool moveWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);

/// Inserts `suffix` before the extension of `name`. Shortens the stem so that the name has at most the length
/// that the file system of `folder` allows, less `spare` bytes. Never splits a UTF-8 sequence.
std::filesystem::path nameWithSuffix(const std::filesystem::path& name, const std::string& suffix,
                                     const std::filesystem::path& folder, std::size_t spare = 0);

/// Keeps a file readable even when its name is removed or taken by another file.
class HeldFile {
public:
    explicit HeldFile(const std::filesystem::path& path);
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    ~HeldFile();

    /// A path that reads the file as long as this object lives; the original path if it could not be opened.
    const std::filesystem::path& path() const { return m_path; }

private:
    int m_descriptor;
    std::filesystem::path m_path;
};

} // namespace complexion
