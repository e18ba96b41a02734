// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <new>

namespace {

/// Larger allocations fail, on all threads: which of them allocates is chance.
std::atomic<std::size_t> maxAllocation = std::numeric_limits<std::size_t>::max();

/// How many more allocations succeed, over all threads, before one fails. Below zero, all succeed.
std::atomic<std::int64_t> allocationsLeft = -1;

bool isRefused(std::size_t size) {
    if (size > maxAllocation)
        return true;
    return allocationsLeft >= 0 && allocationsLeft-- == 0;
}

} // namespace

// Replaces this program's allocation, so that tests can simulate a lack of memory. All forms are replaced, as
// mixing them would free memory with the wrong allocator.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return isRefused(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    void* memory = operator new(size, std::nothrow);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size, std::nothrow);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace complexion {
namespace {

class LackOfMemory {
public:
    explicit LackOfMemory(std::size_t max) { maxAllocation = max; }
    LackOfMemory(const LackOfMemory&) = delete;
    LackOfMemory& operator=(const LackOfMemory&) = delete;
    ~LackOfMemory() { maxAllocation = std::numeric_limits<std::size_t>::max(); }
};

class Unchanged final : public PixelTransform {
public:
    void apply(std::span<RGBA32>) const override {}
};

constexpr std::size_t kLessThanATile = std::size_t{Tile::kWidth} * Tile::kHeight * sizeof(RGBA32) - 1;
constexpr Point kSpot = {128, 64 - 32};

std::optional<Image> repaired(const Image& image) {
    return ImageTools::RemovePimpleFromImage(image, kSpot, 10, 1, {}, 10);
}

TEST(LackingMemory, ForTheTilesOfARepairIsReported) {
    const Image image = spotted({256, 64}, {32, 128}, 4, 40, 180);
    std::optional<Image> result;
    const std::string printed = printedBy([&] {
        const LackOfMemory lack(kLessThanATile);
        result = repaired(image);
    });
    EXPECT_FALSE(result);
    EXPECT_EQ(printed, "unable to get context data\n");
    EXPECT_TRUE(repaired(image));
}

TEST(LackingMemory, ForTheBufferOfARepairIsReported) {
    // Lazily computed pixels have to be stored before they can be painted.
    const Image image =
        spotted({256, 64}, {32, 128}, 4, 40, 180).transformed(std::make_shared<const Unchanged>());
    std::optional<Image> result;
    const std::string printed = printedBy([&] {
        const LackOfMemory lack(kLessThanATile);
        result = repaired(image);
    });
    EXPECT_FALSE(result);
    EXPECT_EQ(printed, "unable to create context\n");
    EXPECT_TRUE(repaired(image));
}

/// Runs `save` repeatedly, failing one allocation each time, a later one in each run, until none fails.
/// Expects that `save` reports success exactly when it has written a complete file, with `metadata` in it.
void expectNoFalseSuccess(const std::filesystem::path& path, std::string_view format,
                          const std::function<bool(const Image&)>& save, std::string_view metadata = "") {
    int failures = 0;
    // Each of the first allocations, then a sample of the many similar ones.
    for (std::int64_t allowed = 0;; allowed += allowed < 100 ? 1 : 7) {
        const Image image = noise({20, 14});
        allocationsLeft = allowed;
        const bool saved = save(image);
        const bool noneFailed = allocationsLeft >= 0;
        allocationsLeft = -1;
        ASSERT_EQ(saved, std::filesystem::exists(path)) << format << ", allocation " << allowed;
        failures += saved ? 0 : 1;
        if (saved) {
            ASSERT_TRUE(ImageTools::DecodeImage(path)) << format << ", allocation " << allowed;
            ASSERT_NE(contentsOf(path).find(metadata), std::string::npos)
                << format << ", allocation " << allowed;
        }
        std::filesystem::remove(path);
        ASSERT_EQ(filesIn(path.parent_path()).size(), 1U) << "a temporary file was left";
        if (noneFailed)
            break;
    }
    EXPECT_GT(failures, 10) << format;
}

TEST(LackingMemory, WhileEncodingIsNeverReportedAsSaved) {
    const TemporaryFolder folder;
    const std::filesystem::path source = folder.path() / "source.jpg";
    ASSERT_TRUE(ImageTools::SaveImage(noise({70, 50}), source, "jpg"));
    writeFile(source, withExif(contentsOf(source), 1, "Nobody"));
    for (const std::string_view format : {"jpg", "png", "tiff", "gif", "bmp"}) {
        const std::filesystem::path path = folder.path() / "result";
        expectNoFalseSuccess(path, format,
                             [&](const Image& image) { return ImageTools::SaveImage(image, path, format); });
        const bool hasMetadata = format == "jpg" || format == "png" || format == "tiff";
        expectNoFalseSuccess(
            path, format, [&](const Image& image) { return savePhoto(image, path, format, source); },
            hasMetadata ? "Nobody" : "");
    }
}

class LackingMemoryForFiles : public testing::Test {
protected:
    LackingMemoryForFiles() {
        EXPECT_TRUE(ImageTools::SaveImage(noise({300, 200}), m_photo, "bmp"));
        EXPECT_TRUE(ImageTools::DecodeImage(m_photo));
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_photo = m_folder.path() / "photo.bmp";
    std::filesystem::path m_target = m_folder.path() / "target";
    // Two pixels per point, so it is scaled down before it is encoded.
    Image m_dense = noise({600, 400}).withSize({300, 200});
};

TEST_F(LackingMemoryForFiles, SavingFailsAndLeavesNoFile) {
    {
        const LackOfMemory lack(kLessThanATile);
        EXPECT_FALSE(ImageTools::SaveImage(m_dense, m_target, "png"));
        EXPECT_FALSE(savePhoto(m_dense, m_target, "png", m_photo));
    }
    EXPECT_EQ(filesIn(m_folder.path()), std::vector<std::string>{"photo.bmp"});
    EXPECT_TRUE(savePhoto(m_dense, m_target, "png", m_photo));
}

TEST_F(LackingMemoryForFiles, AFailedSaveLeavesAnExistingFileUnchanged) {
    const std::filesystem::path source = m_folder.path() / "source.png";
    ASSERT_TRUE(ImageTools::SaveImage(noise({20, 10}), source, "png"));
    writeFile(source, withExif(contentsOf(source), 1, "Nobody"));
    ASSERT_TRUE(ImageTools::SaveImage(noise({20, 10}), m_target, "png"));
    const std::string before = contentsOf(m_target);
    {
        const LackOfMemory lack(kLessThanATile);
        EXPECT_FALSE(savePhoto(m_dense, m_target, "png", source));
    }
    EXPECT_EQ(contentsOf(m_target), before);
}

TEST_F(LackingMemoryForFiles, OpeningFails) {
    const LackOfMemory lack(kLessThanATile);
    EXPECT_FALSE(ImageTools::DecodeImage(m_photo));
    EXPECT_FALSE(openPhoto(m_photo));
}

} // namespace
} // namespace complexion
