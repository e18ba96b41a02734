// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the seed files for fuzzing, in one folder per format: pictures encoded here with and without
// metadata, the tests' hostile files, and the small files in COMPLEXION_TEST_PHOTOS.
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/imaging/hostile_files.h"

#include <algorithm>
#include <cctype>
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
    }

    void add(const std::string& bytes) {
        const Codec* const codec = codecForContent(viewOf(bytes));
        if (codec && bytes.size() <= kMaxBytes)
            writeFile(folderOf(*codec) / std::to_string(m_count++), bytes);
    }

    int count() const { return m_count; }

private:
    std::filesystem::path folderOf(const Codec& codec) const {
        std::string name(codec.name);
        std::ranges::transform(name, name.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return m_folder / name;
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
    for (const HostileFile& file : hostileFiles())
        seeds.add(file.bytes);
    addPhotographs(seeds);
    std::cout << seeds.count() << " seed files\n";
    return 0;
}
