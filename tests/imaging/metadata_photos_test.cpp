// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/carried_metadata.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/metadata/jpeg_metadata.h"
#include "imaging/metadata/photoshop_resources.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace complexion {
namespace {

/// The files in a subfolder of COMPLEXION_TEST_PHOTOS; none if that is not set.
std::vector<std::filesystem::path> photos(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    if (const char* root = std::getenv("COMPLEXION_TEST_PHOTOS"))
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(root / std::filesystem::path(folder)))
            if (entry.is_regular_file())
                files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

/// Appends the tags and values of a directory and its subdirectories, in order.
void addValues(const tiff::Directory& directory, std::vector<std::pair<unsigned, Bytes>>& values) {
    for (const tiff::Entry& entry : directory.entries) {
        if (entry.child)
            addValues(*entry.child, values);
        // The offset and length of a thumbnail in the main directory are removed together with it.
        else if (entry.tag != tiff::tag::kJpegLength)
            values.emplace_back(entry.tag, entry.value);
    }
}

std::vector<std::pair<unsigned, Bytes>> valuesOf(ByteView exif) {
    std::vector<std::pair<unsigned, Bytes>> values;
    if (const auto header = tiff::readHeader(exif))
        addValues(tiff::readDirectory(exif, *header, header->firstDirectory), values);
    return values;
}

std::uint64_t makerNoteOffset(ByteView exif) {
    const auto header = tiff::readHeader(exif);
    if (!header)
        return 0;
    const tiff::Directory directory = tiff::readDirectory(exif, *header, header->firstDirectory);
    const tiff::Entry* note = exif::makerNoteOf(directory);
    return note ? note->valueOffset : 0;
}

TEST(MetadataOfPhotographs, IsCarriedCompletely) {
    const std::vector<std::filesystem::path> files = photos("exif");
    if (files.empty())
        GTEST_SKIP() << "COMPLEXION_TEST_PHOTOS is not set";
    const std::string written = encodedAs(kJpegCodec, shaded({64, 48}));
    for (const std::filesystem::path& path : files) {
        SCOPED_TRACE(path.filename());
        const std::string source = contentsOf(path);
        const PictureMetadata before = jpeg::readMetadata(viewOf(source));
        const PictureMetadata after = jpeg::readMetadata(viewOf(carried(source, written)));
        EXPECT_TRUE(valuesOf(after.exif) == valuesOf(before.exif));
        EXPECT_EQ(makerNoteOffset(after.exif), makerNoteOffset(before.exif));
        EXPECT_TRUE(after.iptc == before.iptc);
        EXPECT_TRUE(after.photoshop == photoshop::resourcesToCarry(before.photoshop));
        EXPECT_EQ(after.xmp.size(), before.xmp.size());
        EXPECT_TRUE(after.notes == before.notes);
        if (before.resolution) {
            EXPECT_EQ(after.resolution, before.resolution);
        }
    }
}

TEST(MetadataOfPhotographs, HostileFilesAreHarmless) {
    const std::vector<std::filesystem::path> files = photos("hostile");
    if (files.empty())
        GTEST_SKIP() << "COMPLEXION_TEST_PHOTOS is not set";
    const Image small = noise({8, 8});
    const std::string targets[] = {encodedAs(kJpegCodec, small), encodedAs(kPngCodec, small),
                                   encodedAs(kGifCodec, small), encodedAs(kBmpCodec, small)};
    for (const std::filesystem::path& path : files) {
        SCOPED_TRACE(path.filename());
        const std::string source = contentsOf(path);
        if (!containerOf(viewOf(source)))
            continue;
        for (const std::string& target : targets) {
            EXPECT_TRUE(withMetadataOf(viewOf(source), viewOf(target)));
            static_cast<void>(withMetadataOf(viewOf(target), viewOf(source))); // it may be refused
        }
    }
}

} // namespace
} // namespace complexion
