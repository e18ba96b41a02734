// SPDX-License-Identifier: GPL-3.0-or-later

// What a child answers is taken whole, or not at all.
#include "imaging/reading/picture_answer.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/transcoding_answers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {
namespace {

constexpr std::size_t kCubeNodes = std::size_t{65} * 65 * 65;

std::shared_ptr<const ScreenTables> someTables() {
    ScreenTables tables;
    tables.light.assign(std::size_t{3} * ScreenTables::kLevels, {-1, 0, kWhiteLight});
    return std::make_shared<const ScreenTables>(tables);
}

PictureAnswer someAnswer() {
    return {.container = Container::Tiff,
            .isPreview = true,
            .orientation = Orientation::RightTop,
            .points = {20, 30},
            .actualSize = {40, 60},
            .losses = {{SavingLoss::Kind::Depth, 16}, {SavingLoss::Kind::Movie, 0}},
            .icc = {1, 2, 3},
            .screenTables = someTables(),
            .damage = Error{"cut", ErrorKind::Damaged},
            .jpegOrientation = Orientation::LeftBottom};
}

TEST(PictureAnswer, ComesBackAsItWasSent) {
    const PictureAnswer sent = someAnswer();
    const Result<PictureAnswer> answer = parsedPictureAnswer(flattened(sent));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->container, sent.container);
    EXPECT_EQ(answer->isPreview, sent.isPreview);
    EXPECT_EQ(answer->orientation, sent.orientation);
    EXPECT_EQ(answer->points, sent.points);
    EXPECT_EQ(answer->actualSize, sent.actualSize);
    EXPECT_EQ(answer->losses, sent.losses);
    EXPECT_EQ(answer->icc, sent.icc);
    EXPECT_EQ(answer->screenTables->light, sent.screenTables->light);
    ASSERT_TRUE(answer->damage);
    EXPECT_EQ(answer->damage->message, "cut");
    EXPECT_EQ(answer->jpegOrientation, sent.jpegOrientation);
}

TEST(PictureAnswer, CanBeAnErrorOfAnyKindWithAPrintableMessage) {
    const Error error{"esc \x1b[2J" + std::string(1000, 'x'), ErrorKind::TooLarge};
    const Result<PictureAnswer> answer = parsedPictureAnswer(flattened(Result<PictureAnswer>(error)));
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().kind, ErrorKind::TooLarge);
    EXPECT_EQ(answer.error().message.substr(0, 9), "esc ?[2Jx");
    EXPECT_EQ(answer.error().message.size(), 200U);
}

TEST(PictureAnswer, ThatIsCutOrTooLongIsNone) {
    const Bytes whole = flattened(someAnswer());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(parsedPictureAnswer(ByteView(whole).first(length))) << length;
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_FALSE(parsedPictureAnswer(longer));
}

TEST(PictureAnswer, WithAValueOutOfItsRangeIsNone) {
    std::vector<PictureAnswer> wrong(15, someAnswer());
    wrong[0].container = static_cast<Container>(5);
    wrong[1].orientation = static_cast<Orientation>(0);
    wrong[2].orientation = static_cast<Orientation>(9);
    wrong[3].points.width = std::nan("");
    wrong[4].points.height = -1;
    wrong[5].actualSize = {1 << 20, 1 << 20};
    wrong[6].jpegOrientation = static_cast<Orientation>(9);
    wrong[7].damage->kind = static_cast<ErrorKind>(7);
    wrong[8].losses.push_back({static_cast<SavingLoss::Kind>(8), 0});
    wrong[9].losses.push_back(wrong[9].losses.front());
    wrong[10].losses.front().count = -1;
    std::vector<ScreenTables> tables(4, *someTables());
    tables[0].light.pop_back();
    tables[1].light.back()[2] = std::nanf("");
    tables[2].light.front()[0] = 1e9F;
    tables[3].nodes.resize(kCubeNodes);
    for (std::size_t i = 0; i < tables.size(); ++i)
        wrong[11 + i].screenTables = std::make_shared<const ScreenTables>(tables[i]);
    for (std::size_t i = 0; i < wrong.size(); ++i)
        EXPECT_FALSE(parsedPictureAnswer(flattened(wrong[i]))) << i;
}

Result<jpeg::TranscodedFile> parsedTranscoding(ByteView bytes, PixelSize stored) {
    MemorySource source(bytes);
    return readTranscoding(source, stored);
}

TEST(TranscodingAnswer, IsAFileOfThePicturesSizeOrNone) {
    const Image image = noise({90, 70});
    const Result<jpeg::TranscodedFile> transcoded = jpeg::transcode(viewOf(encodedAs(kJpegCodec, image)));
    ASSERT_TRUE(transcoded);
    const Bytes whole = flattened(transcoded);
    ASSERT_TRUE(parsedTranscoding(whole, image.pixelSize()));
    EXPECT_FALSE(parsedTranscoding(whole, {90, 170}));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(parsedTranscoding(ByteView(whole).first(length), image.pixelSize())) << length;
    jpeg::TranscodedFile marked = *transcoded;
    Bytes row = *marked.rows.back();
    row.insert(row.end(), {0xFF, 0xD9});
    marked.rows.back() = std::make_shared<const Bytes>(row);
    EXPECT_FALSE(parsedTranscoding(flattened(marked), image.pixelSize()));
}

TEST(TranscodingAnswer, CanBeAnError) {
    const Result<jpeg::TranscodedFile> file =
        parsedTranscoding(flattened(Result<jpeg::TranscodedFile>(Error{"damaged"})), {90, 70});
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().message, "damaged");
}

TEST(TranscodingAnswer, CanFailBetweenItsRows) {
    const Image image = noise({90, 70});
    const Result<jpeg::TranscodedFile> transcoded = jpeg::transcode(viewOf(encodedAs(kJpegCodec, image)));
    ASSERT_TRUE(transcoded);
    MemorySink sink;
    writeHead(&*transcoded, sink);
    writeRow(*transcoded->rows.front(), sink);
    writeFailure(Error{"out of range"}, sink);
    const Result<jpeg::TranscodedFile> file = parsedTranscoding(sink.written(), image.pixelSize());
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().message, "out of range");
}

TEST(TranscodingAnswer, HasRowsOfAPlausibleLength) {
    const Image image = noise({90, 70});
    Result<jpeg::TranscodedFile> transcoded = jpeg::transcode(viewOf(encodedAs(kJpegCodec, image)));
    ASSERT_TRUE(transcoded);
    Bytes row = *transcoded->rows.front();
    row.resize(std::size_t{1} << 20);
    transcoded->rows.front() = std::make_shared<const Bytes>(row);
    EXPECT_FALSE(parsedTranscoding(flattened(transcoded), image.pixelSize()));
}

} // namespace
} // namespace complexion
