// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/imaging/hostile_files.h"

#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"

#include <utility>

#include <zlib.h>

namespace complexion {

namespace {

using namespace std::string_literals;

constexpr std::size_t kMegabyte = 1 << 20;

/// A zlib stream of `count` zeros, compressed to about a thousandth.
std::string deflatedZeros(std::size_t count) {
    const std::string zeros(count, '\0');
    uLongf length = compressBound(zeros.size());
    std::string stream(length, '\0');
    compress2(reinterpret_cast<Bytef*>(stream.data()), &length, reinterpret_cast<const Bytef*>(zeros.data()),
              zeros.size(), 9);
    stream.resize(length);
    return stream;
}

std::string repeated(const std::string& part, std::size_t times) {
    std::string all;
    all.reserve(part.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += part;
    return all;
}

std::string nameOf(const std::string& format, std::uint64_t width, std::uint64_t height) {
    return format + " of " + std::to_string(width) + " by " + std::to_string(height);
}

// BMP.

std::string bmp(std::uint64_t width, std::uint64_t height, int bits, int compression,
                const std::string& data) {
    return "BM" + littleNumber(54 + 1024 + data.size(), 4) + littleNumber(0, 4) + littleNumber(54 + 1024, 4) +
           littleNumber(40, 4) + littleNumber(width, 4) + littleNumber(height, 4) + littleNumber(1, 2) +
           littleNumber(static_cast<unsigned>(bits), 2) +
           littleNumber(static_cast<unsigned>(compression), 4) + std::string(20, '\0') +
           std::string(1024, '\x55') + data;
}

void addBmps(std::vector<HostileFile>& files) {
    for (const auto& [width, height] : largeSizes()) {
        files.push_back({nameOf("BMP", width, height), bmp(width, height, 24, 0, std::string(100, 'x'))});
        files.push_back({nameOf("run-length BMP", width, height), bmp(width, height, 8, 1, "\xff\x01\0\1"s)});
    }
    files.push_back(
        {"BMP with only delta codes", bmp(4000, 4000, 8, 1, repeated("\0\2\xff\xff"s, kMegabyte / 4))});
    files.push_back({"BMP with a million rows", bmp(1, 1'000'000, 8, 1, repeated("\0\0"s, kMegabyte))});
}

// PNG.

std::string png(std::uint64_t width, std::uint64_t height, int depth, int color, bool interlaced,
                const std::string& chunks) {
    return "\x89PNG\r\n\x1a\n" +
           pngChunkOf("IHDR", bigNumber(width, 4) + bigNumber(height, 4) + static_cast<char>(depth) +
                                  static_cast<char>(color) + "\0\0"s + static_cast<char>(interlaced)) +
           chunks + pngChunkOf("IEND", "");
}

void addPngs(std::vector<HostileFile>& files) {
    const std::string few = pngChunkOf("IDAT", deflatedZeros(1000));
    for (const auto& [width, height] : largeSizes())
        for (const bool interlaced : {false, true})
            files.push_back({nameOf(interlaced ? "interlaced PNG" : "PNG", width, height),
                             png(width, height, 8, 2, interlaced, few)});
    const std::string bomb = deflatedZeros(100 * kMegabyte);
    const std::string name = "x\0\0"s;
    files.push_back(
        {"PNG with a decompression bomb after its rows", png(16, 16, 8, 2, false, pngChunkOf("IDAT", bomb))});
    files.push_back({"PNG with a decompression bomb as its profile",
                     png(16, 16, 8, 2, false, pngChunkOf("iCCP", name + bomb) + few)});
    files.push_back({"PNG with a hundred compressed texts of 15 MB",
                     png(16, 16, 8, 2, false,
                         repeated(pngChunkOf("zTXt", name + deflatedZeros(15 * kMegabyte)), 100) + few)});
    files.push_back({"PNG with a hundred thousand chunks",
                     png(16, 16, 8, 2, false, repeated(pngChunkOf("tEXt", "k\0v"s), 100'000) + few)});
    files.push_back({"PNG with a hundred thousand empty data chunks",
                     png(16, 16, 8, 2, false, repeated(pngChunkOf("IDAT", ""), 100'000) + few)});
    files.push_back({"PNG with a chunk of impossible length",
                     png(16, 16, 8, 2, false, bigNumber(0xffffffff, 4) + "tEXt" + few)});
}

// JPEG.

std::string frameOf(std::uint64_t width, std::uint64_t height, int marker) {
    return jpegSegmentOf(marker, "\x08"s + bigNumber(height, 2) + bigNumber(width, 2) +
                                     "\x03\x01\x11\0\x02\x11\0\x03\x11\0"s);
}

std::string scanOf(int component, int first, int last, int high, int low) {
    return jpegSegmentOf(0xda, "\1"s + static_cast<char>(component) + "\0"s + static_cast<char>(first) +
                                   static_cast<char>(last) + static_cast<char>(high << 4 | low));
}

/// The tables that a scan needs.
std::string jpegTables() {
    const std::string quantization = "\0"s + std::string(64, '\1');
    const std::string oneCode = "\1"s + std::string(15, '\0') + "\0"s; // a single code of one bit
    return jpegSegmentOf(0xdb, quantization) + jpegSegmentOf(0xc4, "\0"s + oneCode) +
           jpegSegmentOf(0xc4, "\x10"s + oneCode);
}

void addJpegs(std::vector<HostileFile>& files) {
    const std::string start = "\xff\xd8";
    const std::string end = "\xff\xd9";
    for (const auto& [width, height] : largeSizes())
        for (const int marker : {0xc0, 0xc2, 0xc9}) // baseline, progressive, arithmetic
            files.push_back({nameOf("JPEG (" + std::to_string(marker) + ")", width, height),
                             start + jpegTables() + frameOf(width, height, marker) +
                                 scanOf(1, 0, marker == 0xc2 ? 0 : 63, 0, 0) + "\0\0\0\0"s + end});
    std::string scans;
    for (int i = 0; i < 10'000; ++i)
        scans += scanOf(1 + i % 3, 0, 0, i < 3 ? 0 : 1, 0);
    for (const int side : {64, 4000, 8000})
        files.push_back({"progressive JPEG with ten thousand scans at " + std::to_string(side),
                         start + jpegTables() +
                             frameOf(static_cast<unsigned>(side), static_cast<unsigned>(side), 0xc2) + scans +
                             end});
    const std::string jpeg = encodedAs(kJpegCodec, shaded({32, 32}));
    const std::string filler(65'533, 'x');
    for (const int marker : {0xe1, 0xe2, 0xfe})
        files.push_back(
            {"JPEG with eight megabytes of segments " + std::to_string(marker),
             withSegments(jpeg, repeated(jpegSegmentOf(marker, "Exif\0\0"s + filler.substr(6)), 128))});
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = start + jpegTables() + frameOf(1024, 1024, 0xc0) + scanOf(1, 0, 63, 0, 0) + end;
    files.push_back({"JPEG with ten thousand large thumbnails",
                     withSegments(jpeg, repeated(jpegSegmentOf(0xe1, "Exif\0\0"s + exif.bytes()), 10'000))});
    files.push_back({"JPEG with a million empty segments",
                     withSegments(jpeg, repeated(jpegSegmentOf(0xe2, ""), 1'000'000))});
    files.push_back({"JPEG with a profile in 255 parts of which one is missing", [&] {
                         std::string parts;
                         for (int i = 1; i < 255; ++i)
                             parts += jpegSegmentOf(0xe2, "ICC_PROFILE\0"s + static_cast<char>(i) + '\xff' +
                                                              filler.substr(0, 30'000));
                         return withSegments(jpeg, parts);
                     }()});
}

// GIF.

std::string gif(std::uint64_t width, std::uint64_t height, const std::string& blocks) {
    return "GIF89a" + littleNumber(width, 2) + littleNumber(height, 2) + "\x80\0\0"s + "\0\0\0\xff\xff\xff"s +
           blocks + ";";
}

std::string gifFrame(std::uint64_t width, std::uint64_t height, const std::string& data) {
    return ","s + littleNumber(0, 4) + littleNumber(width, 2) + littleNumber(height, 2) + "\0\x02"s + data +
           "\0"s;
}

void addGifs(std::vector<HostileFile>& files) {
    const std::string clear = "\2\x44\1"s; // a clear code and the end code
    for (const auto& [width, height] : largeSizes()) {
        files.push_back({nameOf("GIF", width, height), gif(width, height, gifFrame(width, height, clear))});
        files.push_back(
            {nameOf("GIF with a small frame", width, height), gif(width, height, gifFrame(1, 1, clear))});
    }
    files.push_back(
        {"GIF with a hundred thousand frames", gif(16, 16, repeated(gifFrame(16, 16, clear), 100'000))});
    files.push_back({"GIF with endless comments",
                     gif(16, 16, "!\xfe"s + repeated("\xff"s + std::string(255, 'c'), 30'000) + "\0"s)});
    files.push_back(
        {"GIF with only clear codes",
         gif(4000, 4000, gifFrame(4000, 4000, repeated("\xff"s + std::string(255, '\x24'), 30'000)))});
}

} // namespace

const std::vector<std::pair<std::uint64_t, std::uint64_t>>& largeSizes() {
    static const std::vector<std::pair<std::uint64_t, std::uint64_t>> sizes = {
        {0, 0},          {0, 100},         {100, 0},         {0x7fffffff, 0x7fffffff}, {0xffffffff, 1},
        {1, 0xffffffff}, {0x7fffffff, 1},  {1, 0x7fffffff},  {0x80000000, 0x80000000}, {65535, 65535},
        {16384, 16384},  {1'000'000, 268}, {268, 1'000'000}, {16385, 16385},           {65500, 4096},
    };
    return sizes;
}

std::vector<HostileFile> hostileFiles() {
    std::vector<HostileFile> files = hostileTiffs();
    addBmps(files);
    addPngs(files);
    addJpegs(files);
    addGifs(files);
    return files;
}

} // namespace complexion
