// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

/// The bytes of a file to be written, in parts, so that bytes which are kept elsewhere need no copy.
struct FileContents {
    std::vector<std::shared_ptr<const Bytes>> parts;

    void append(Bytes bytes) { parts.push_back(std::make_shared<const Bytes>(std::move(bytes))); }
    std::uint64_t size() const;
    /// All parts in one.
    Bytes joined() const;
};

/// Longer files are refused before memory is taken for them.
inline constexpr std::int64_t kMaxFile = std::int64_t{2} << 30;
/// As many bytes of a file tell what it is.
inline constexpr std::size_t kTellingBytes = 64;

/// A whole regular file of at most kMaxFile bytes; anything else that stands at `path` (folder, pipe,
/// device) is an error. So is a file whose first kTellingBytes `isWanted` does not want: it is no picture.
Result<Bytes> readFile(const std::filesystem::path& path, bool (*isWanted)(ByteView start) = nullptr);

/// Who may read a file besides its owner.
struct Readers {
    bool everybodyInGroup = true;
    bool allOthers = true;
    /// The group; nothing where the group alone does not decide, because the file has an access control list.
    std::optional<gid_t> group;
};

/// The readers of the file at `path`; nothing when its attributes cannot be read.
std::optional<Readers> readersOf(const std::filesystem::path& path);

/// Writes to a temporary file beside `path` and moves it over `path` in one step. An error, with whatever
/// stood at `path` untouched and no temporary file left, when that fails. A new file has the usual mode (0666
/// less the umask), less what would let anybody read it who is not among `readers`.
Result<Done> writeFileAtomically(const std::filesystem::path& path, const FileContents& contents,
                                 const std::optional<Readers>& readers = std::nullopt);

/// Has the system put the file's bytes and its folder's entry on the disk; false when it reports an error.
bool flushToDisk(const std::filesystem::path& path);

/// Moves a file to a name that nothing has yet. False, with errno set (EEXIST: the name is taken) and the
/// file where it was, when that fails.
bool moveWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);

/// `name` with `suffix` put before its extension, cut in front of the suffix to what the file system of
/// `folder` allows as a name less `spare` bytes. Never cuts a UTF-8 sequence in two.
std::filesystem::path nameWithSuffix(const std::filesystem::path& name, const std::string& suffix,
                                     const std::filesystem::path& folder, std::size_t spare = 0);

/// A file that stays readable when its name is taken away: one that may be replaced while it is still needed.
class HeldFile {
public:
    explicit HeldFile(const std::filesystem::path& path);
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    ~HeldFile();

    /// A path that reads the file for as long as it is held; the file's own where it could not be opened.
    const std::filesystem::path& path() const { return m_path; }

private:
    int m_descriptor;
    std::filesystem::path m_path;
};

} // namespace complexion
