// SPDX-License-Identifier: GPL-3.0-or-later

// Malicious files are refused, or opened as far as they are valid, within limits on time and memory. Each is
// opened in a child process, whose usage is measured.
#include "tests/imaging/hostile_files.h"

#include "imaging/carried_metadata.h"
#include "imaging/image_tools.h"
#include "tests/fakes/measured.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <unistd.h>

namespace complexion {
namespace {

constexpr double kMaxSeconds = 2; // of CPU time, which does not depend on other load
constexpr std::int64_t kMaxMemoryOfRefused = std::int64_t{1} << 30;
constexpr std::int64_t kMaxMemoryOfOpened = std::int64_t{1} << 30;

enum class Outcome { Refused, Opened, Died };

struct Cost {
    Outcome outcome = Outcome::Died;
    double seconds = 0;
    std::int64_t memory = 0; // peak, in bytes
};

/// Opens a file as the editor does, and carries its metadata into `written`. Returns whether it is a picture.
bool openLikeTheEditor(const std::filesystem::path& path, const std::filesystem::path& written) {
    const std::optional<Image> image = ImageTools::DecodeImage(path);
    if (!image || !ImageTools::ImageActualSize(path))
        return false;
    const Image actual = ImageTools::BringImageToActualSize(*image, path);
    ImageTools::ChangeImageExif(path, written);
    return actual.hasPixels();
}

Cost costOf(const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(work() ? 1 : 0);
    }
    int status = 0;
    rusage usage = {};
    ::wait4(child, &status, 0, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    Cost cost{.seconds = seconds(usage.ru_utime) + seconds(usage.ru_stime), .memory = usage.ru_maxrss * 1024};
    if (WIFEXITED(status))
        cost.outcome = WEXITSTATUS(status) == 1 ? Outcome::Opened : Outcome::Refused;
    return cost;
}

class HostileFiles : public testing::Test {
protected:
    HostileFiles() { writeFile(written, encodedAs(kJpegCodec, filled({16, 16}, kSkin))); }

    Cost costOfOpening(const std::string& bytes) {
        const std::filesystem::path path = folder.path() / "file";
        writeFile(path, bytes);
        return costOf([&] { return openLikeTheEditor(path, written); });
    }

    TemporaryFolder folder;
    std::filesystem::path written = folder.path() / "written.jpg";
};

TEST_F(HostileFiles, AreRefusedOrOpenedWithinLimits) {
    struct Row {
        std::string name;
        std::size_t length = 0;
        Cost cost;
    };
    std::vector<Row> rows;
    for (const HostileFile& file : hostileFiles()) {
        const Cost cost = costOfOpening(file.bytes);
        rows.push_back({file.name, file.bytes.size(), cost});
        EXPECT_NE(cost.outcome, Outcome::Died) << file.name;
        if (!kIsMeasured)
            continue;
        EXPECT_LT(cost.seconds, kMaxSeconds) << file.name;
        EXPECT_LT(cost.memory, cost.outcome == Outcome::Refused ? kMaxMemoryOfRefused : kMaxMemoryOfOpened)
            << file.name;
    }
    // Log the most expensive files.
    constexpr std::size_t kShown = 12;
    std::ranges::sort(rows, [](const Row& a, const Row& b) { return a.cost.seconds > b.cost.seconds; });
    const Cost nothing = costOf([] { return false; });
    std::cout << rows.size() << " files; a process that opens none takes " << nothing.memory / (1 << 20)
              << " MiB; the slowest:\n";
    for (const Row& row : std::span(rows).first(std::min(kShown, rows.size())))
        std::cout << std::fixed << std::setprecision(2) << std::setw(7) << row.cost.seconds << " s "
                  << std::setw(6) << row.cost.memory / (1 << 20) << " MiB "
                  << (row.cost.outcome == Outcome::Opened ? "opened  " : "refused ") << row.length
                  << " bytes: " << row.name << '\n';
    std::ranges::sort(rows, [](const Row& a, const Row& b) { return a.cost.memory > b.cost.memory; });
    std::cout << "the largest:\n";
    for (const Row& row : std::span(rows).first(std::min(kShown, rows.size())))
        std::cout << std::setw(7) << row.cost.seconds << " s " << std::setw(6) << row.cost.memory / (1 << 20)
                  << " MiB " << (row.cost.outcome == Outcome::Opened ? "opened  " : "refused ") << row.length
                  << " bytes: " << row.name << '\n';
}

TEST_F(HostileFiles, OfHugeLengthAreRefusedWithoutReading) {
    const std::filesystem::path path = folder.path() / "endless";
    for (const char* const start : {"", "\xff\xd8\xff", "II*\0\x08", "BM"}) {
        writeFile(path, start);
        std::filesystem::resize_file(path, std::uintmax_t{1} << 40); // sparse
        const Cost cost = costOf([&] { return openLikeTheEditor(path, written); });
        EXPECT_EQ(cost.outcome, Outcome::Refused);
        if (kIsMeasured) {
            EXPECT_LT(cost.seconds, kMaxSeconds);
            EXPECT_LT(cost.memory, std::int64_t{256} << 20);
        }
    }
}

TEST_F(HostileFiles, TruncatedAnywhereAreOpenedPartlyOrRefused) {
    for (const Codec* const codec : codecs()) {
        SCOPED_TRACE(codec->name);
        const Image picture = noise({257, 130});
        const std::string whole = encodedAs(*codec, picture);
        constexpr std::size_t kParts = 64;
        for (std::size_t part = 0; part < kParts; ++part) {
            const std::string truncated = whole.substr(0, whole.size() * part / kParts);
            const Result<Image> image = codec->decode(viewOf(truncated));
            if (image) {
                EXPECT_EQ(image->pixelSize().width, 257) << part;
                EXPECT_EQ(image->pixelSize().height, 130) << part;
            }
            const auto result = withMetadataOf(viewOf(truncated), viewOf(whole));
            ASSERT_EQ(bool(result), containerOf(viewOf(truncated)).has_value()) << part;
            if (!result)
                continue;
            EXPECT_TRUE(codec->decode(viewOf(stringOf(*result)))) << part;
        }
        EXPECT_TRUE(codec->decode(viewOf(whole)));
    }
}

} // namespace
} // namespace complexion
