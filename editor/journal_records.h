// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_step.h"
#include "editor/photo_hash.h"
#include "imaging/base/files.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace complexion {

/// A photo that a journal is about: where it is, and how to tell that it is still the same.
struct JournaledPhoto {
    std::filesystem::path path;
    std::int64_t size = 0;                // bytes
    std::int64_t modifiedNanoseconds = 0; // since 1970
    std::optional<PhotoHash> hash;        // none while it is not computed yet
    bool operator==(const JournaledPhoto&) const = default;
};

/// What a journal holds.
struct JournalContents {
    JournaledPhoto photo;
    std::vector<EditStep> steps;
    std::size_t length = 0; // bytes up to the end of the last whole record

    std::int64_t repairCount() const;
};

// A journal's bytes: 8 bytes "CMPLXJNL", the version as a 32-bit number, the record of the photo, and then a
// record a step, in their order. A record is the 16-bit length of its payload, a byte for its kind, the
// payload, and the CRC-32 of all of these. Numbers are little-endian; fractions are IEEE 754 doubles.

inline constexpr std::uint32_t kJournalVersion = 1;

/// The beginning of a journal; the photo's hash has a record of its own.
Bytes journalHead(const JournaledPhoto& photo);
Bytes journalRecord(const PhotoHash& hash);
Bytes journalRecord(const EditStep& step);

enum class JournalKind {
    Journal,
    Unfinished, // ends within its head: no step was ever recorded
    Foreign,    // of another version, or no journal
};

struct ParsedJournal {
    JournalKind kind = JournalKind::Foreign;
    JournalContents contents; // of a Journal
};

/// Reads a journal up to the first record that is torn, damaged, or means nothing.
ParsedJournal parseJournal(ByteView bytes);

} // namespace complexion
