// SPDX-License-Identifier: GPL-3.0-or-later

// Small files of giant pictures: opening takes memory for the pixels that a file has, not for the area that
// it declares. Each is opened in a process of its own, with a reader process, whose usage is measured.
#include "imaging/photo_files.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/measured.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/imaging/tiff_writer.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <iomanip>
#include <iostream>

#include <zlib.h>

namespace complexion {
namespace {

using namespace std::string_literals;

constexpr std::int64_t kMiB = 1 << 20;

struct Usage {
    double seconds = 0;      // of CPU time
    std::int64_t memory = 0; // peak, in bytes
};

Usage usageOf(int who) {
    rusage usage = {};
    ::getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {.seconds = seconds(usage.ru_utime) + seconds(usage.ru_stime), .memory = usage.ru_maxrss * 1024};
}

/// What another process found out.
struct Opening {
    bool isOpened = false;
    PixelSize size;
    Usage program;
    Usage reader; // with its children
};

Opening openingOf(const std::string& bytes) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "file";
    writeFile(path, bytes);
    void* const shared =
        ::mmap(nullptr, sizeof(Opening), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Opening& opening = *new (shared) Opening();
    const pid_t child = ::fork();
    if (child == 0) {
        {
            const InstalledReader reader;
            const Result<OpenedPhoto> photo = openPhoto(path);
            opening.isOpened = bool(photo);
            if (photo)
                opening.size = photo->image.pixelSize();
        }
        opening.program = usageOf(RUSAGE_SELF);
        opening.reader = usageOf(RUSAGE_CHILDREN);
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    const Opening copy = opening;
    ::munmap(shared, sizeof(Opening));
    return copy;
}

/// What both processes take beyond those that open a tiny picture.
Usage costOf(const Opening& opening) {
    static const Opening kTiny = openingOf(encodedAs(kJpegCodec, filled({16, 16}, kSkin)));
    return {.seconds = opening.program.seconds + opening.reader.seconds,
            .memory =
                opening.program.memory - kTiny.program.memory + opening.reader.memory - kTiny.reader.memory};
}

/// Expects the file to be opened at this size, with 3 bytes for each of its own and 64 MiB beside the pixels
/// that it has, and in 2 seconds.
void expectOpened(const std::string& name, const std::string& file, PixelSize size,
                  std::int64_t pixelsInFile) {
    const Opening opening = openingOf(file);
    if (!kIsMeasured && !opening.isOpened)
        GTEST_SKIP() << "an unoptimized reader may need more processor time than it is allowed";
    EXPECT_TRUE(opening.isOpened) << name;
    EXPECT_EQ(opening.size, size) << name;
    Usage cost = costOf(opening);
    // The slots are one memory, which both processes count.
    cost.memory -=
        SlotMemory::kSlots * std::max<std::int64_t>(SlotMemory::kUsualBytes, std::int64_t{4} * size.width);
    std::cout << name << ", " << file.size() / 1000 << " kB: " << std::fixed << std::setprecision(2)
              << cost.seconds << " s, " << cost.memory / kMiB << " MiB; at the peak "
              << opening.program.memory / kMiB << " MiB in the program and " << opening.reader.memory / kMiB
              << " MiB in the reader\n";
    if (!kIsMeasured)
        return;
    const auto length = static_cast<std::int64_t>(file.size());
    EXPECT_LT(cost.memory, pixelsInFile * 4 + 3 * length + 64 * kMiB) << name;
}

std::string deflated(const std::string& bytes) {
    uLongf length = compressBound(bytes.size());
    std::string stream(length, '\0');
    compress2(reinterpret_cast<Bytef*>(stream.data()), &length, reinterpret_cast<const Bytef*>(bytes.data()),
              bytes.size(), 9);
    stream.resize(length);
    return stream;
}

std::string textOfFile(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

TEST(GiantFiles, OfPagesThatAreLongInBothDirectionsTakeMemoryForTheFirst) {
    constexpr int kLong = 16'000;
    test::TiffWriter writer;
    std::vector<std::uint8_t> samples;
    for (int i = 0; i < 3 * kLong; ++i)
        samples.push_back(static_cast<std::uint8_t>(i * i / 7));
    writer.begin({kLong, 1}, 3, 8, PHOTOMETRIC_RGB);
    writer.strip(samples.data(), samples.size());
    TIFFWriteDirectory(writer.handle());
    writer.begin({1, kLong}, 3, 8, PHOTOMETRIC_RGB);
    writer.strip(samples.data(), samples.size());
    expectOpened("TIFF of two pages", textOfFile(writer.finish()), {kLong, kLong}, 2 * kLong);
}

TEST(GiantFiles, OfOneDeepColorTakeMemoryForOneTile) {
    constexpr PixelSize kSize = {16'384, 16'384};
    constexpr int kRows = 64;
    const std::string strip =
        deflated(std::string(std::size_t{3} * 2 * static_cast<std::size_t>(kSize.width) * kRows, '\x77'));
    test::TiffWriter writer;
    writer.begin(kSize, 3, 16, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(writer.handle(), TIFFTAG_ROWSPERSTRIP, kRows);
    for (int i = 0; i < kSize.height / kRows; ++i)
        TIFFWriteRawStrip(writer.handle(), static_cast<std::uint32_t>(i), const_cast<char*>(strip.data()),
                          static_cast<tmsize_t>(strip.size()));
    expectOpened("deflated 16-bit TIFF", textOfFile(writer.finish()), kSize, 0);
}

TEST(GiantFiles, OfAMillionColumnsTakeMemoryForOneBand) {
    constexpr PixelSize kSize = {1'000'000, 268};
    const std::string file =
        "\x89PNG\r\n\x1a\n" +
        pngChunkOf("IHDR", bigNumber(static_cast<unsigned>(kSize.width), 4) +
                               bigNumber(static_cast<unsigned>(kSize.height), 4) + "\x08\0\0\0\0"s) +
        pngChunkOf("IDAT",
                   deflated(std::string(static_cast<std::size_t>(kSize.area() + kSize.height), '\0'))) +
        pngChunkOf("IEND", "");
    expectOpened("PNG of a million columns", file, kSize, std::int64_t{kSize.width} * Tile::kHeight);
}

/// The header of a scan of all three components.
std::string scanOf(int first, int last, int high, int low) {
    return jpegSegmentOf(0xda, "\3\1\0\2\0\3\0"s + static_cast<char>(first) + static_cast<char>(last) +
                                   static_cast<char>(high << 4 | low));
}

TEST(GiantFiles, OfManyScansAreReadAsFarAsTheyCanBeInTime) {
    constexpr unsigned kSide = 4000;
    const std::string quantization = "\0"s + std::string(64, '\1');
    const std::string oneCode = "\1"s + std::string(15, '\0') + "\0"s; // of one bit
    std::string file = "\xff\xd8" + jpegSegmentOf(0xdb, quantization) + jpegSegmentOf(0xc4, "\0"s + oneCode) +
                       jpegSegmentOf(0xc2, "\x08"s + bigNumber(kSide, 2) + bigNumber(kSide, 2) +
                                               "\x03\x01\x11\0\x02\x11\0\x03\x11\0"s) +
                       scanOf(0, 0, 0, 1) + std::string(250, '\0');
    // Refinements of the first coefficients, a bit for each.
    for (int scan = 1; scan < 1500; ++scan)
        file += scanOf(0, 0, 1, 0) + std::string(250, '\x55');
    file += "\xff\xd9";
    const Usage cost = costOf(openingOf(file));
    std::cout << "JPEG of 1500 scans, " << file.size() / 1000 << " kB: " << cost.seconds << " s, "
              << cost.memory / kMiB << " MiB\n";
    if (kIsMeasured) {
        EXPECT_LT(cost.seconds, 2);
    }
}

} // namespace
} // namespace complexion
