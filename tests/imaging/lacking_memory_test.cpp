// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "tests/fakes/captured_output.h"
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

/// Allocations of more bytes than this fail, on the thread that sets it.
thread_local std::size_t largestAllocation = std::numeric_limits<std::size_t>::max();

/// So many more allocations succeed, on all threads together; the one after them fails. Below zero: all do.
std::atomic<std::int64_t> allocationsLeft = -1;

bool isRefused(std::size_t size) {
    if (size > largestAllocation)
        return true;
    return allocationsLeft >= 0 && allocationsLeft-- == 0;
}

} // namespace

// This program's own allocation, so that a test can be short of memory. All forms are replaced: where only
// some are, memory of one would be given back to another.

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
    explicit LackOfMemory(std::size_t largest) { largestAllocation = largest; }
    LackOfMemory(const LackOfMemory&) = delete;
    LackOfMemory& operator=(const LackOfMemory&) = delete;
    ~LackOfMemory() { largestAllocation = std::numeric_limits<std::size_t>::max(); }
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

TEST(LackingMemory, ForTheTilesToPaintGivesNoImageAndSaysSo) {
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

TEST(LackingMemory, ForTheBufferItselfGivesNoImageAndSaysSo) {
    // Pixels that are computed when read have to be stored before they can be painted.
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

/// Runs `save` again and again with one failed allocation each time, ever later ones, until none fails: the
/// save says that it succeeded when there is a whole file, and only then.
void expectNoFalseSuccess(const std::filesystem::path& path, std::string_view format,
                          const std::function<bool(const Image&)>& save) {
    int failures = 0;
    // All of the first ones, then some of the many that are alike.
    for (std::int64_t allowed = 0;; allowed += allowed < 100 ? 1 : 7) {
        const Image image = noise({20, 14});
        allocationsLeft = allowed;
        const bool saved = save(image);
        const bool isOver = allocationsLeft >= 0;
        allocationsLeft = -1;
        ASSERT_EQ(saved, std::filesystem::exists(path)) << format << ", allocation " << allowed;
        failures += saved ? 0 : 1;
        if (saved) {
            ASSERT_TRUE(ImageTools::DecodeImage(path)) << format << ", allocation " << allowed;
        }
        std::filesystem::remove(path);
        ASSERT_EQ(filesIn(path.parent_path()).size(), 1U) << "something is left";
        if (isOver)
            break;
    }
    EXPECT_GT(failures, 10) << format;
}

TEST(LackingMemory, WhileEncodingIsNeverReportedAsSaved) {
    const TemporaryFolder folder;
    const std::filesystem::path source = folder.path() / "source.jpg";
    ASSERT_TRUE(ImageTools::SaveImage(noise({70, 50}), source, "jpg"));
    for (const std::string_view format : {"jpg", "png", "tiff", "gif", "bmp"}) {
        const std::filesystem::path path = folder.path() / "result";
        expectNoFalseSuccess(path, format,
                             [&](const Image& image) { return ImageTools::SaveImage(image, path, format); });
        expectNoFalseSuccess(path, format,
                             [&](const Image& image) { return savePhoto(image, path, format, source); });
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
    // Twice as many pixels as points: it is scaled down before it is encoded.
    Image m_dense = noise({600, 400}).withSize({300, 200});
};

TEST_F(LackingMemoryForFiles, NothingIsSavedAndThatIsSaid) {
    {
        const LackOfMemory lack(kLessThanATile);
        EXPECT_FALSE(ImageTools::SaveImage(m_dense, m_target, "png"));
        EXPECT_FALSE(savePhoto(m_dense, m_target, "png", m_photo));
    }
    EXPECT_EQ(filesIn(m_folder.path()), std::vector<std::string>{"photo.bmp"});
    EXPECT_TRUE(savePhoto(m_dense, m_target, "png", m_photo));
}

TEST_F(LackingMemoryForFiles, APhotoDoesNotOpen) {
    const LackOfMemory lack(kLessThanATile);
    EXPECT_FALSE(ImageTools::DecodeImage(m_photo));
    EXPECT_FALSE(openPhoto(m_photo));
}

} // namespace
} // namespace complexion
