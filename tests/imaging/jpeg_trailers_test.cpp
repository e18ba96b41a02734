// SPDX-License-Identifier: GPL-3.0-or-later

// The trailers that cameras and archives append to JPEG files are saved without their pictures.
#include "imaging/carried_metadata.h"
#include "imaging/codecs/codec.h"
#include "imaging/containers/byte_order.h"
#include "imaging/containers/jpeg_segments.h"
#include "imaging/gain_map.h"
#include "imaging/photo_files.h"
#include "tests/fakes/jpeg_files.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace std::string_literals;

// Trailers of cameras.

/// A Samsung trailer with these blocks.
std::string samsungTrailerOf(const std::vector<std::string>& contents) {
    std::string blocks;
    std::string entries;
    for (const std::string& content : contents) {
        const std::string block = "\0\0\x01\x0a"s + littleNumber(4, 4) + "Name" + content;
        blocks += block;
        entries += "\0\0\x01\x0a"s + littleNumber(blocks.size(), 4) + littleNumber(block.size(), 4);
    }
    // The distances count from the directory, which follows the last block.
    for (std::size_t at = 4; at < entries.size(); at += 12) {
        const std::size_t end =
            static_cast<std::size_t>(numberAt(viewOf(entries), at, 4, ByteOrder::LittleEndian));
        const std::size_t size =
            static_cast<std::size_t>(numberAt(viewOf(entries), at + 4, 4, ByteOrder::LittleEndian));
        entries.replace(at, 4, littleNumber(blocks.size() - end + size, 4));
    }
    const std::string directory = "SEFH" + littleNumber(106, 4) + littleNumber(contents.size(), 4) + entries;
    return blocks + directory + littleNumber(directory.size(), 4) + "SEFT";
}

class Trailer : public testing::Test {
protected:
    /// What is saved of a photo with this trailer.
    std::string saved(const std::string& trailer) const {
        const std::filesystem::path source = folder.path() / "photo.jpg";
        const std::filesystem::path path = folder.path() / "saved.jpg";
        writeFile(source, encodedAs(kJpegCodec, skinWithBlemishes({64, 48}, {{20, 30}})) + trailer);
        EXPECT_TRUE(savePhoto(openPhoto(source)->image, path, "jpg", source));
        return contentsOf(path);
    }
    TemporaryFolder folder;
};

TEST_F(Trailer, IsCarried) {
    const std::string trailer = samsungTrailerOf({"1700000000000", "{\"json\": 1}"});
    EXPECT_TRUE(saved(trailer).ends_with("\xff\xd9" + trailer));
}

TEST_F(Trailer, IsCarriedWithoutItsPicturesAndMovies) {
    const std::string picture = encodedAs(kJpegCodec, filled({8, 8}, kSkin));
    const std::string movie = littleNumber(24, 4) + "ftypmp42 moving face";
    EXPECT_TRUE(
        saved(samsungTrailerOf({picture, "text", movie})).ends_with("\xff\xd9" + samsungTrailerOf({"text"})));
    EXPECT_TRUE(saved(samsungTrailerOf({picture, movie})).ends_with("\xff\xd9"));
}

TEST_F(Trailer, IsCarriedByCallersWithoutThePicture) {
    const std::string trailer = samsungTrailerOf({"text"});
    const Image image = skinWithBlemishes({64, 48}, {{20, 30}});
    const std::string photo = encodedAs(kJpegCodec, image) + trailer;
    const jpeg::KeptAttachments kept = keptAttachments(viewOf(photo), image);
    ASSERT_EQ(kept.size(), 1U);
    const Result<FileContents> file = withMetadataOf(viewOf(photo), *kJpegCodec.encode(image), {}, kept);
    ASSERT_TRUE(file);
    EXPECT_TRUE(textOf(file->joined()).ends_with("\xff\xd9" + trailer));
}

TEST_F(Trailer, ThatIsDamagedIsLeftOut) {
    std::string trailer = samsungTrailerOf({"text"});
    const std::size_t entry = trailer.find("SEFH") + 12;
    for (const auto& [at, value] :
         {std::pair(entry + 4, 1000U), std::pair(entry + 8, 1000U), std::pair(entry - 4, 70000U),
          std::pair(trailer.size() - 8, 0xFFFFFFFFU)}) {
        std::string damaged = trailer;
        damaged.replace(at, 4, littleNumber(value, 4));
        EXPECT_TRUE(saved(damaged).ends_with("\xff\xd9"));
    }
}

// Trailers of picture archives.

struct AfcpBlock {
    std::string name;
    std::string content;
};

/// Such a trailer at offset `begin` of its file.
std::string afcpTrailerOf(const std::vector<AfcpBlock>& blocks, std::size_t begin, bool isBigEndian) {
    const std::string mark = isBigEndian ? "AXS!" : "AXS*";
    const auto number = [&](std::uint64_t value, std::size_t length) {
        Bytes bytes;
        appendNumber(bytes, length, isBigEndian ? ByteOrder::BigEndian : ByteOrder::LittleEndian, value);
        return std::string(bytes.begin(), bytes.end());
    };
    std::string directory = mark + number(1, 2) + number(blocks.size(), 2) + number(0, 4);
    std::string contents;
    for (const AfcpBlock& block : blocks) {
        directory += block.name + number(block.content.size(), 4) +
                     number(begin + 12 + 12 * blocks.size() + contents.size(), 4);
        contents += block.content;
    }
    return directory + contents + mark + number(begin, 4) + number(0, 4);
}

class AfcpTrailer : public Trailer {
protected:
    static std::size_t photoSize() {
        return encodedAs(kJpegCodec, skinWithBlemishes({64, 48}, {{20, 30}})).size();
    }
    /// What is saved of a photo with these blocks, from the end of the picture on, and where that is.
    std::pair<std::string, std::size_t> savedTrailer(const std::string& trailer) const {
        const std::string file = saved(trailer);
        const std::size_t end = jpeg::pictureEnd(viewOf(file)).value_or(0);
        return {file.substr(end), end};
    }
};

TEST_F(AfcpTrailer, IsCarriedWithItsOffsets) {
    const std::vector<AfcpBlock> blocks = {{"TEXT", "a text"}, {"IPTC", "\x1c\x02\x78"}};
    for (const bool isBigEndian : {true, false}) {
        // Bytes that nothing declares are not carried, so that the offsets change.
        const auto [trailer, at] = savedTrailer("junk" + afcpTrailerOf(blocks, photoSize() + 4, isBigEndian));
        EXPECT_NE(at, photoSize() + 4);
        EXPECT_EQ(trailer, afcpTrailerOf(blocks, at, isBigEndian));
    }
}

TEST_F(AfcpTrailer, IsCarriedWithoutItsPictures) {
    const std::string picture = encodedAs(kJpegCodec, filled({8, 8}, kSkin));
    const auto [trailer, at] = savedTrailer(
        afcpTrailerOf({{"Nail", picture}, {"TEXT", "text"}, {"PrVw", "head" + picture}}, photoSize(), true));
    EXPECT_EQ(trailer, afcpTrailerOf({{"TEXT", "text"}}, at, true));
    EXPECT_EQ(savedTrailer(afcpTrailerOf({{"Nail", picture}}, photoSize(), true)).first, "");
}

TEST_F(AfcpTrailer, IsCarriedBehindAnother) {
    const std::string inner = samsungTrailerOf({"text"});
    const auto [trailer, at] =
        savedTrailer(inner + afcpTrailerOf({{"TEXT", "text"}}, photoSize() + inner.size(), false));
    EXPECT_EQ(trailer, inner + afcpTrailerOf({{"TEXT", "text"}}, at + inner.size(), false));
}

TEST_F(AfcpTrailer, ThatIsDamagedIsLeftOut) {
    const std::string whole = afcpTrailerOf({{"TEXT", "text"}}, photoSize(), true);
    for (const std::size_t at : {std::size_t{0}, std::size_t{6}, std::size_t{16}, std::size_t{20},
                                 whole.size() - 12, whole.size() - 8}) {
        std::string damaged = whole;
        damaged[at] = '\x7f';
        EXPECT_EQ(savedTrailer(damaged).first, "") << at;
    }
}

} // namespace
} // namespace complexion
