// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

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
inline constexpr std::int64_t kLongestFile = std::int64_t{2} << 30;
/// As many bytes of a file tell what it is.
inline constexpr std::size_t kTellingBytes = 64;

/// A whole regular file of at most kLongestFile bytes; anything else that stands at `path` (folder, pipe,
/// device) is an error. So is a file whose first kTellingBytes `isWanted` does not want.
Result<Bytes> readFile(const std::filesystem::path& path, bool (*isWanted)(ByteView start) = nullptr);

/// Writes to a temporary file beside `path` and moves it over `path` in one step. False, with whatever stood
/// at `path` untouched and no temporary file left, when that fails. A new file has the usual mode (0666 less
/// the umask).
bool writeFileAtomically(const std::filesystem::path& path, const FileContents& contents);

/// Has the system put the file's bytes and its folder's entry on the disk; false when it reports an error.
bool flushToDisk(const std::filesystem::path& path);

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
