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

/// The photo of a journal, and how to recognise it.
struct JournaledPhoto {
    std::filesystem::path path;
    std::int64_t size = 0;                // bytes
    std::int64_t modifiedNanoseconds = 0; // since 1970
    std::optional<PhotoHash> hash;        // nullopt until it has been computed
    bool operator==(const JournaledPhoto&) const = default;
};

/// The contents of a journal.
struct JournalContents {
    JournaledPhoto photo;
    std::vector<EditStep> steps;
    std::size_t length = 0; // bytes up to the end of the last whole record

    std::int64_t repairCount() const;
};

// Format: the 8 bytes "CMPLXJNL", the version (32 bits), the record of the photo, and then one record for
// each step, in order. A record is the length of its payload (16 bits), its kind (8 bits), the payload, and
// the CRC-32 of all of these. Integers are little-endian; fractions are IEEE 754 doubles.

inline constexpr std::uint32_t kJournalVersion = 9;

/// The header and the photo's record, without the hash, which has a record of its own.
Bytes journalHead(const JournaledPhoto& photo);
Bytes journalRecord(const PhotoHash& hash);
Bytes journalRecord(const EditStep& step);

enum class JournalKind {
    Journal,
    Unfinished, // truncated before its first step
    Foreign,    // another version, or not a journal
};

struct ParsedJournal {
    JournalKind kind = JournalKind::Foreign;
    JournalContents contents; // of a Journal
};

/// Reads a journal up to the first record that is truncated, damaged or invalid.
ParsedJournal parseJournal(ByteView bytes);

} // namespace complexion
