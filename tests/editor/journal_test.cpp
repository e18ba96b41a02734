// SPDX-License-Identifier: GPL-3.0-or-later

// The journal's records and files.
#include "editor/journal.h"
#include "tests/fakes/eventually.h"
#include "tests/fakes/full_disk.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <limits>
#include <thread>

namespace complexion {

namespace {

RepairStep repairAt(double x, double y) {
    RepairStep step;
    step.place = {x, y};
    step.repair.radius = 12;
    step.repair.threshold = 7;
    step.repair.style = RepairStyle::Natural;
    step.repair.colorType = 1;
    step.repair.customColor = {0.25, 0.5, 1};
    step.stateMilliseconds = 1479282091234;
    return step;
}

RepairStep strokeFrom(double x, double y) {
    RepairStep step = repairAt(x, y);
    step.stroke = {{x + 3, y + 0.5}, {x + 6, y - 2}};
    return step;
}

const std::vector<EditStep> kSteps = {repairAt(1.5, 2.25), strokeFrom(3, 4), StateLostStep{3}, MoveStep{0},
                                      EffectStep{5}};

Bytes bytesOf(const std::vector<EditStep>& steps) {
    Bytes bytes =
        journalHead({.path = "/photos/a face.jpg", .size = 77, .modifiedNanoseconds = 88, .hash = {}});
    for (const EditStep& step : steps) {
        const Bytes record = journalRecord(step);
        bytes.insert(bytes.end(), record.begin(), record.end());
    }
    return bytes;
}

TEST(JournalRecords, AreReadBackAsTheyWereWritten) {
    const ParsedJournal parsed = parseJournal(bytesOf(kSteps));
    ASSERT_EQ(parsed.kind, JournalKind::Journal);
    EXPECT_EQ(parsed.contents.photo.path, "/photos/a face.jpg");
    EXPECT_EQ(parsed.contents.photo.size, 77);
    EXPECT_EQ(parsed.contents.photo.modifiedNanoseconds, 88);
    EXPECT_FALSE(parsed.contents.photo.hash.has_value());
    EXPECT_EQ(parsed.contents.steps, kSteps);
    EXPECT_EQ(parsed.contents.repairCount(), 2);
    EXPECT_EQ(parsed.contents.length, bytesOf(kSteps).size());
}

TEST(JournalRecords, TheHashIsOfThePhoto) {
    Bytes bytes = bytesOf({kSteps[0]});
    PhotoHash hash = {};
    hash[3] = 9;
    const Bytes record = journalRecord(hash);
    bytes.insert(bytes.end(), record.begin(), record.end());
    EXPECT_EQ(parseJournal(bytes).contents.photo.hash, hash);
}

// Truncates the journal at every byte: only complete records are read.
TEST(JournalRecords, ATornRecordIsDropped) {
    const Bytes bytes = bytesOf(kSteps);
    const std::size_t head = bytesOf({}).size();
    std::size_t complete = 0;
    std::size_t end = head;
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const ParsedJournal parsed = parseJournal(ByteView(bytes).first(length));
        if (length < head) {
            EXPECT_EQ(parsed.kind, JournalKind::Unfinished) << length;
            continue;
        }
        while (complete < kSteps.size() && length >= end + journalRecord(kSteps[complete]).size())
            end += journalRecord(kSteps[complete++]).size();
        ASSERT_EQ(parsed.kind, JournalKind::Journal) << length;
        EXPECT_EQ(parsed.contents.steps.size(), complete) << length;
        EXPECT_EQ(parsed.contents.length, end) << length;
    }
    EXPECT_EQ(complete, kSteps.size());
}

// Flips a bit in every byte: no step changes, and none is read from the damage on.
TEST(JournalRecords, ADamagedRecordEndsTheJournal) {
    const Bytes whole = bytesOf(kSteps);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        Bytes damaged = whole;
        damaged[at] ^= 0x10;
        const ParsedJournal parsed = parseJournal(damaged);
        ASSERT_LT(parsed.contents.steps.size(), kSteps.size()) << at;
        for (std::size_t i = 0; i < parsed.contents.steps.size(); ++i)
            EXPECT_EQ(parsed.contents.steps[i], kSteps[i]) << at;
    }
}

TEST(JournalRecords, TheLongestStrokeFitsIntoARecord) {
    RepairStep step = repairAt(1, 2);
    for (std::size_t i = 1; i < kMaxStrokePoints; ++i)
        step.stroke.push_back({static_cast<double>(i), 2});
    EXPECT_EQ(parseJournal(bytesOf({step})).contents.steps, std::vector<EditStep>{step});
    step.stroke.back().x = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(parseJournal(bytesOf({step})).contents.steps.empty());
}

TEST(JournalRecords, OfAnotherVersionOrKindAreForeign) {
    Bytes bytes = bytesOf(kSteps);
    ++bytes[8];
    EXPECT_EQ(parseJournal(bytes).kind, JournalKind::Foreign);
    bytes = bytesOf(kSteps);
    ++bytes[0];
    EXPECT_EQ(parseJournal(bytes).kind, JournalKind::Foreign);
    EXPECT_EQ(parseJournal({}).kind, JournalKind::Unfinished);
}

TEST(JournalRecords, ValuesOutOfRangeAreRefused) {
    for (const auto& invalidate : std::vector<void (*)(RepairStep&)>{
             [](RepairStep& step) { step.place.x = std::numeric_limits<double>::quiet_NaN(); },
             [](RepairStep& step) { step.repair.radius = 0; },
             [](RepairStep& step) { step.repair.radius = std::int64_t{1} << 40; },
             [](RepairStep& step) { step.repair.threshold = std::int64_t{1} << 40; },
             [](RepairStep& step) { step.repair.style = static_cast<RepairStyle>(2); },
             [](RepairStep& step) { step.changesBack = -1; }}) {
        RepairStep step = repairAt(1, 1);
        invalidate(step);
        EXPECT_TRUE(parseJournal(bytesOf({step})).contents.steps.empty());
    }
}

class Journals : public testing::Test {
protected:
    Journals() {
        std::ofstream(photo) << "the bytes of a photo";
        journal = std::make_unique<Journal>(folder);
    }

    void begin() { journal->begin(photo, *identify(photo)); }
    /// The abandoned journals, as the next start finds them.
    std::vector<AbandonedJournal> found() { return AbandonedJournal::findIn(folder); }
    std::filesystem::path file() const { return folder / JournalFile::namesIn(folder).at(0); }
    void append(const std::vector<EditStep>& steps) {
        for (const EditStep& step : steps)
            journal->append(step);
    }
    /// Appends the first steps, which create the file, and waits for it.
    void appendFirst(const std::vector<EditStep>& steps) {
        append(steps);
        EXPECT_TRUE(eventually(
            [this] { return !JournalFile::namesIn(folder).empty() && !contentsOf(file()).empty(); }));
    }
    /// Destroys the journal without ending it, as a crash does.
    void abandon() { journal.reset(); }
    static mode_t modeOf(const std::filesystem::path& path) {
        struct stat status = {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "state/complexion";
    std::filesystem::path photo = home.path() / "face.jpg";
    std::unique_ptr<Journal> journal;
};

TEST_F(Journals, NothingIsWrittenBeforeTheFirstStep) {
    begin();
    EXPECT_FALSE(std::filesystem::exists(folder));
    appendFirst({kSteps[0]});
    EXPECT_EQ(filesIn(folder).size(), 1U);
}

TEST_F(Journals, CanBeReadByTheUserOnly) {
    begin();
    appendFirst(kSteps);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(file()), 0600U);
    abandon();
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    found();
    EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(Journals, AreFoundOnlyWhenAbandoned) {
    begin();
    appendFirst(kSteps);
    EXPECT_TRUE(found().empty());
    abandon();
    const std::vector<AbandonedJournal> works = found();
    ASSERT_EQ(works.size(), 1U);
    EXPECT_EQ(works[0].contents.steps, kSteps);
    EXPECT_EQ(works[0].contents.photo.path, photo);
    EXPECT_TRUE(found().empty()) << "another process already holds it";
}

TEST_F(Journals, SeveralProcessesHaveOneEach) {
    begin();
    appendFirst(kSteps);
    Journal other(folder);
    other.begin(photo, *identify(photo));
    other.append(kSteps[0]);
    EXPECT_TRUE(eventually([this] { return filesIn(folder).size() == 2U; }));
    abandon();
    ASSERT_EQ(found().size(), 1U);
    EXPECT_EQ(found()[0].contents.steps.size(), kSteps.size());
}

TEST_F(Journals, TheHashFollowsTheFirstStep) {
    begin();
    appendFirst(kSteps);
    const PhotoHash expected = [this] {
        PhotoHasher hasher(photo);
        while (hasher.readOn()) {
        }
        return *hasher.result();
    }();
    const auto isThere = [&] {
        const std::string bytes = contentsOf(file());
        return parseJournal(ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()))
                   .contents.photo.hash == expected;
    };
    EXPECT_TRUE(eventually(isThere));
}

TEST_F(Journals, APhotoReplacedSinceItWasReadGetsNoHash) {
    begin();
    std::filesystem::remove(photo);
    std::ofstream(photo) << "the bytes of another one";
    append(kSteps);
    abandon();
    ASSERT_EQ(found().size(), 1U);
    EXPECT_FALSE(found()[0].contents.photo.hash.has_value());
    EXPECT_EQ(matchPhoto(found()[0].contents.photo), PhotoMatch::Different);
}

TEST_F(Journals, ForgettingDeletesTheFileAndItsNewFolders) {
    begin();
    appendFirst(kSteps);
    journal->forget();
    EXPECT_FALSE(std::filesystem::exists(folder.parent_path())) << "the folders that the journal created";
    append(kSteps);
    EXPECT_FALSE(std::filesystem::exists(folder));
    std::filesystem::create_directory(folder.parent_path());
    begin();
    appendFirst(kSteps);
    begin();
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_TRUE(std::filesystem::exists(folder.parent_path())) << "a folder that existed before";
}

TEST_F(Journals, NothingIsAppendedAfterTheEnd) {
    begin();
    journal->append(kSteps[0]);
    journal->end();
    journal->append(kSteps[1]);
    abandon();
    EXPECT_EQ(found().at(0).contents.steps.size(), 1U);
}

TEST_F(Journals, AreResumedAfterATornRecord) {
    begin();
    append(kSteps);
    abandon();
    const std::filesystem::path path = file();
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
    std::vector<AbandonedJournal> works = found();
    ASSERT_EQ(works.size(), 1U);
    const std::size_t stepCount = works[0].contents.steps.size();
    journal = std::make_unique<Journal>(folder);
    journal->resume(works[0], *identify(photo));
    works.clear();
    EXPECT_TRUE(found().empty()) << "it is in use again";
    journal->append(MoveStep{9});
    abandon();
    works = found();
    ASSERT_EQ(works.size(), 1U);
    ASSERT_EQ(works[0].contents.steps.size(), stepCount + 1);
    EXPECT_EQ(works[0].contents.steps.back(), EditStep(MoveStep{9}));
}

TEST_F(Journals, FilesWithoutAStepAreDeletedAndForeignFilesKept) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "empty.journal");
    std::ofstream(folder / "begun.journal") << "CMPLXJNL";
    std::ofstream(folder / "other.journal") << "CMPLXJNL\xFF\x01\x01\x01 of a later version";
    std::ofstream(folder / "text.journal") << "a text";
    std::ofstream(folder / "notes.txt") << "a text";
    std::filesystem::create_directory(folder / "folder.journal");
    EXPECT_TRUE(found().empty());
    EXPECT_EQ(filesIn(folder),
              (std::vector<std::string>{"folder.journal", "notes.txt", "other.journal", "text.journal"}));
}

TEST_F(Journals, AreWrittenOnceTheirFolderCanBeCreated) {
    std::ofstream(home.path() / "state") << "a file in place of the folder";
    begin();
    append(kSteps);
    EXPECT_TRUE(found().empty());
    std::filesystem::remove(home.path() / "state");
    journal->append(MoveStep{1});
    abandon();
    ASSERT_EQ(found().size(), 1U);
    EXPECT_EQ(found()[0].contents.steps.size(), kSteps.size() + 1);
}

TEST_F(Journals, AFullDiskLeavesCompleteRecordsAndTheRestFollowsOnceThereIsRoom) {
    begin();
    appendFirst({kSteps[0]});
    {
        const FullDisk full(std::filesystem::file_size(file()) + 10);
        append(kSteps);
        EXPECT_EQ(parseJournal(readFile(file()) ? *readFile(file()) : Bytes()).contents.steps.size(), 1U);
    }
    journal->append(MoveStep{1});
    abandon();
    ASSERT_EQ(found().size(), 1U);
    EXPECT_EQ(found()[0].contents.steps.size(), kSteps.size() + 2);
}

TEST_F(Journals, ThePhotoIsIdentifiedByItsBytes) {
    JournaledPhoto known{.path = photo,
                         .size = 20,
                         .modifiedNanoseconds = identify(photo)->modifiedNanoseconds,
                         .hash = std::nullopt};
    EXPECT_EQ(matchPhoto(known), PhotoMatch::Same);
    known.modifiedNanoseconds += 1;
    EXPECT_EQ(matchPhoto(known), PhotoMatch::Different);
    PhotoHasher hasher(photo);
    while (hasher.readOn()) {
    }
    known.hash = hasher.result();
    EXPECT_EQ(matchPhoto(known), PhotoMatch::Same) << "a copy with another time";
    std::ofstream(photo) << "the bytes of a photO";
    EXPECT_EQ(matchPhoto(known), PhotoMatch::Different);
    std::filesystem::remove(photo);
    EXPECT_EQ(matchPhoto(known), PhotoMatch::Gone);
}

} // namespace

} // namespace complexion
