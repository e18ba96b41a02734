// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the seed files for fuzzing, in one folder per format: pictures encoded here with and without
// metadata, the tests' hostile files, and the small files in COMPLEXION_TEST_PHOTOS.
#include "imaging/base/lower_case.h"
#include "imaging/base/screen_tables.h"
#include "imaging/reading/picture_answer.h"
#include "tests/fakes/hdr_photos.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"
#include "tests/fakes/transcoding_answers.h"
#include "tests/imaging/deep_files.h"
#include "tests/imaging/hostile_files.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>

using namespace complexion;
using namespace std::string_literals;

namespace {

constexpr std::size_t kMaxBytes = 64 << 10;

class Seeds {
public:
    explicit Seeds(std::filesystem::path folder) : m_folder(std::move(folder)) {
        for (const Codec* const codec : codecs())
            std::filesystem::create_directories(folderOf(*codec));
        std::filesystem::create_directories(answers());
    }

    void add(const std::string& bytes) {
        const Codec* const codec = codecForContent(viewOf(bytes));
        if (codec && bytes.size() <= kMaxBytes)
            writeFile(folderOf(*codec) / std::to_string(m_count++), bytes);
    }

    void addAnswer(const std::string& bytes) { writeFile(answers() / std::to_string(m_count++), bytes); }

    int count() const { return m_count; }

private:
    /// For the target reader_answer.
    std::filesystem::path answers() const { return m_folder / "answer"; }
    std::filesystem::path folderOf(const Codec& codec) const {
        return m_folder / lowerCase(std::string(codec.name));
    }

    std::filesystem::path m_folder;
    int m_count = 0;
};

/// An XMP packet with its extension split into two segments.
std::string extendedXmpSegments() {
    const std::string digest(32, 'A');
    const std::string extension = "<r:RDF xmlns:r='r'><r:Description xmlns:b='b' b:C='c'><b:D>d</b:D>"
                                  "<xmp:Thumbnails>face</xmp:Thumbnails></r:Description></r:RDF>";
    const auto piece = [&](std::size_t from, std::size_t length) {
        return jpegSegmentOf(0xe1, "http://ns.adobe.com/xmp/extension/\0"s + digest +
                                       bigNumber(extension.size(), 4) + bigNumber(from, 4) +
                                       extension.substr(from, length));
    };
    return jpegSegmentOf(0xe1, "http://ns.adobe.com/xap/1.0/\0<r:RDF xmlns:r='r'>"
                               "<r:Description xmpNote:HasExtendedXMP='"s +
                                   digest + "'/></r:RDF>") +
           piece(0, 50) + piece(50, extension.size());
}

void addEncodedPictures(Seeds& seeds) {
    const Image faded = painted({40, 30}, [](int row, int column) {
        const auto alpha = static_cast<std::uint8_t>(row * 8);
        return RGBA32(alpha, static_cast<std::uint8_t>(alpha / 2),
                      std::min<std::uint8_t>(alpha, static_cast<std::uint8_t>(column)), alpha);
    });
    for (const Codec* const codec : codecs())
        for (const Image& image : {skinWithBlemishes({40, 30}, {{15, 20}}), noise({33, 70}), faded}) {
            const std::string plain = encodedAs(*codec, image);
            seeds.add(plain);
            for (const bool isBigEndian : {false, true}) {
                SampleTiff exif = cameraExif(6, isBigEndian);
                exif.thumbnail = encodedAs(kJpegCodec, filled({16, 12}, kSkin));
                const std::string source = withSegments(
                    encodedAs(kJpegCodec, filled({8, 8}, kSkin)),
                    jpegSegmentOf(0xe1, "Exif\0\0"s + exif.bytes()) +
                        jpegSegmentOf(
                            0xe1, "http://ns.adobe.com/xap/1.0/\0<x:xmpmeta xmlns:x='adobe:ns:meta/'/>"s) +
                        jpegSegmentOf(0xed, "Photoshop 3.0\0"
                                            "8BIM\x04\x04\0\0\0\0\0\x07\x1c\x02\x50\0\x02me\0"s) +
                        jpegSegmentOf(0xfe, "A comment"));
                seeds.add(source);
                seeds.add(carried(source, plain));
                const std::string extended =
                    withSegments(encodedAs(kJpegCodec, filled({8, 8}, kSkin)), extendedXmpSegments());
                seeds.add(extended);
                seeds.add(carried(extended, plain));
                exif.strip = std::string(20, 'x');
                seeds.add(exif.bytes());
            }
        }
}

/// Photos with gain maps, previews and movies.
void addHdrPhotos(Seeds& seeds) {
    const Image photo = skinWithBlemishes({160, 120}, {{60, 80}});
    for (const HdrKind kind : {HdrKind::Directory, HdrKind::Auxiliary})
        for (const int components : {1, 3})
            for (const bool hasMore : {false, true})
                seeds.add(hdrPhoto(photo, {.kind = kind,
                                           .mapComponents = components,
                                           .hasPreview = hasMore,
                                           .hasMovie = hasMore,
                                           .orientation = hasMore ? 6 : 1})
                              .file);
}

/// Pictures of 16 bits a sample.
void addDeepPictures(Seeds& seeds) {
    constexpr PixelSize kSize = {45, 70};
    const std::array<test::DeepKind, 8> kinds = {
        test::DeepKind{.name = "", .isPng = true},
        test::DeepKind{.name = "", .isPng = true, .isGrey = true, .hasAlpha = true, .isInterlaced = true},
        test::DeepKind{.name = "", .isGrey = true, .mode = "wb"},
        test::DeepKind{.name = "", .hasAlpha = true, .isPlanar = true, .isTiled = true},
        test::DeepKind{.name = "", .hasAlpha = true, .alphaKind = EXTRASAMPLE_ASSOCALPHA, .orientation = 6},
        test::DeepKind{.name = "", .mode = "wb", .compression = COMPRESSION_LZW},
        test::DeepKind{.name = "", .isTiled = true, .compression = COMPRESSION_ADOBE_DEFLATE},
        test::DeepKind{.name = "", .mode = "w8l", .compression = COMPRESSION_PACKBITS}};
    for (const test::DeepKind& kind : kinds) {
        const Bytes file = test::deepFile(test::skinSamples(kSize, kind), kind);
        seeds.add({file.begin(), file.end()});
    }
}

std::string answerMessage(AnswerMessage::Kind kind, int depth, int first, int count) {
    return static_cast<char>(static_cast<int>(kind) + 4 * depth) +
           littleNumber(static_cast<std::uint64_t>(first), 4) +
           littleNumber(static_cast<std::uint64_t>(count), 4);
}

/// What children answer, in the form that the target reads.
void addAnswers(Seeds& seeds) {
    using Kind = AnswerMessage::Kind;
    const Bytes profile = wideProfile();
    PictureAnswer plain;
    plain.points = {40, 4};
    PictureAnswer rich = plain;
    rich.icc = profile;
    rich.screenTables = std::make_shared<const ScreenTables>(screenTablesOf(profile));
    rich.losses = {{SavingLoss::Kind::Pages, 2}, {SavingLoss::Kind::Layers, 0}};
    rich.damage = Error{"cut"};
    rich.jpegOrientation = Orientation::LeftBottom;
    for (const PictureAnswer& answer : {plain, rich})
        for (int depth = 0; depth < 3; ++depth) {
            const Bytes flat = flattened(answer);
            const auto rowBytes = 40 * pixelBytes(static_cast<PixelDepth>(depth));
            seeds.addAnswer("\0"s + answerMessage(Kind::Picture, depth, 40, 4) +
                            answerMessage(Kind::Rows, depth, 0, 3) + std::string(3 * rowBytes, '\x5a') +
                            answerMessage(Kind::Rows, depth, 3, 1) + std::string(rowBytes, '\xff') +
                            answerMessage(Kind::Part, depth, 0, static_cast<int>(flat.size())) +
                            std::string(flat.begin(), flat.end()) + answerMessage(Kind::End, depth, 0, 0));
        }
    for (const Image& image : {noise({40, 30}), filled({40, 30}, grey(90))}) {
        const Bytes flat = flattened(jpeg::transcode(viewOf(encodedAs(kJpegCodec, image))));
        seeds.addAnswer("\1" + std::string(flat.begin(), flat.end()));
    }
}

void addPhotographs(Seeds& seeds) {
    const char* const folder = std::getenv("COMPLEXION_TEST_PHOTOS");
    if (!folder)
        return;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.file_size() <= kMaxBytes)
            seeds.add(contentsOf(entry.path()));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: fuzz_seeds FOLDER\n";
        return 2;
    }
    Seeds seeds(argv[1]);
    addEncodedPictures(seeds);
    addHdrPhotos(seeds);
    addDeepPictures(seeds);
    addAnswers(seeds);
    for (const HostileFile& file : hostileFiles())
        seeds.add(file.bytes);
    addPhotographs(seeds);
    std::cout << seeds.count() << " seed files\n";
    return 0;
}
