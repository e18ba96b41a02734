// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

/// Allocations of more bytes than this fail, on the thread that sets it.
thread_local std::size_t largestAllocation = std::numeric_limits<std::size_t>::max();

} // namespace

// This program's own allocation, so that a test can be short of memory. All forms are replaced: where only
// some are, memory of one would be given back to another.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return size > largestAllocation ? nullptr : std::malloc(size == 0 ? 1 : size);
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
