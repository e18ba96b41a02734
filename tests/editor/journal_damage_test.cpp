// SPDX-License-Identifier: GPL-3.0-or-later

// Journals whose records have the right checksums, but not the contents that this program writes.
#include "editor/journal_records.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <limits>
#include <string>

namespace complexion {

namespace {

constexpr char kPhotoRecord = 1;
constexpr char kHashRecord = 2;
constexpr char kMoveRecord = 5;
constexpr char kUnknownRecord = 99;
constexpr std::size_t kSignatureAndVersion = 12; // bytes

std::string littleEndian(std::uint64_t number, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(number >> (8 * i));
    return text;
}

std::string recordWith(char kind, const std::string& payload) {
    const std::string text = littleEndian(payload.size(), 2) + kind + payload;
    return text + littleEndian(crc32_z(0, reinterpret_cast<const Bytef*>(text.data()), text.size()), 4);
}

std::string textOf(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

ParsedJournal parsed(const std::string& text) {
    return parseJournal({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::string headOfJournal() {
    return textOf(journalHead({.path = "/photos/face.jpg", .size = 7, .modifiedNanoseconds = 8, .hash = {}}));
}

/// A journal whose first record has this kind and payload.
ParsedJournal parsedHead(char kind, const std::string& payload) {
    return parsed(headOfJournal().substr(0, kSignatureAndVersion) + recordWith(kind, payload));
}

const std::string kMove = recordWith(kMoveRecord, littleEndian(3, 8));

TEST(JournalDamage, ThisTestWritesRecordsAsTheProgramDoes) {
    EXPECT_EQ(kMove, textOf(journalRecord(EditStep(MoveStep{3}))));
    EXPECT_EQ(parsedHead(kPhotoRecord, littleEndian(7, 8) + littleEndian(8, 8) + "/photos/face.jpg").kind,
              JournalKind::Journal);
}

TEST(JournalDamage, AJournalThatDoesNotBeginWithAPhotoIsForeign) {
    const std::string numbers = littleEndian(7, 8) + littleEndian(8, 8);
    EXPECT_EQ(parsedHead(kMoveRecord, numbers + "/photos/face.jpg").kind, JournalKind::Foreign);
    EXPECT_EQ(parsedHead(kPhotoRecord, numbers + "photos/face.jpg").kind, JournalKind::Foreign)
        << "a relative path";
    EXPECT_EQ(parsedHead(kPhotoRecord, numbers).kind, JournalKind::Foreign) << "no path";
    EXPECT_EQ(parsedHead(kPhotoRecord, littleEndian(7, 8) + "/a").kind, JournalKind::Foreign) << "no time";
}

TEST(JournalDamage, ARecordThatIsNoStepEndsTheJournal) {
    for (const std::string& record :
         {recordWith(kUnknownRecord, littleEndian(3, 8)), recordWith(kHashRecord, std::string(31, 'h')),
          recordWith(kHashRecord, std::string(33, 'h')), recordWith(kMoveRecord, littleEndian(3, 7)),
          recordWith(kMoveRecord, littleEndian(3, 9))}) {
        const ParsedJournal journal = parsed(headOfJournal() + kMove + record + kMove);
        ASSERT_EQ(journal.kind, JournalKind::Journal);
        EXPECT_EQ(journal.contents.steps, std::vector<EditStep>{MoveStep{3}});
        EXPECT_FALSE(journal.contents.photo.hash);
        EXPECT_EQ(journal.contents.length, headOfJournal().size() + kMove.size());
    }
}

TEST(JournalDamage, ARepairThatTheProgramCannotDoIsNoStep) {
    const auto isRead = [](const auto& change) {
        RepairStep step;
        step.repair.radius = 1;
        step.stroke = {{1, 2}};
        change(step);
        return !parsed(headOfJournal() + textOf(journalRecord(EditStep(step)))).contents.steps.empty();
    };
    EXPECT_TRUE(isRead([](RepairStep&) {}));
    EXPECT_TRUE(isRead([](RepairStep& step) { step.stroke.resize(kMaxStrokePoints); }));
    EXPECT_FALSE(isRead([](RepairStep& step) { step.stroke.resize(kMaxStrokePoints + 1); }));
    EXPECT_FALSE(
        isRead([](RepairStep& step) { step.stroke.back().y = std::numeric_limits<double>::quiet_NaN(); }));
    EXPECT_FALSE(isRead([](RepairStep& step) { step.repair.colorType = 2; }));
    EXPECT_FALSE(isRead([](RepairStep& step) { step.repair.threshold = -(std::int64_t{1} << 40); }));
}

} // namespace

} // namespace complexion
