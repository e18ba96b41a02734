// SPDX-License-Identifier: GPL-3.0-or-later

// During long use, memory and open files level off. COMPLEXION_LONG_USE=1 runs the full test (see ./check
// long-use): 2000 clicks on 24 megapixels, 200 photos.
#include "tests/editor/editor_fixture.h"

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <unistd.h>

namespace complexion {

namespace {

bool isFullTest() {
    return std::getenv("COMPLEXION_LONG_USE") != nullptr;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kKeepsFreedMemory = true; // in quarantine, to detect use after free
#else
constexpr bool kKeepsFreedMemory = false;
#endif

/// The resources of this process.
struct Usage {
    double residentMebibytes = 0;
    int openFiles = 0;
};

Usage usage() {
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    const auto files = filesIn("/proc/self/fd").size() - 1; // without the listing's own descriptor
    return {static_cast<double>(resident * ::sysconf(_SC_PAGESIZE)) / (1 << 20), static_cast<int>(files)};
}

class LongUse : public EditorTest {
protected:
    /// Softly lit skin covered with blemishes.
    static Image portrait(PixelSize size) {
        return painted(size, [](int row, int column) {
            const int y = row % 80 - 40;
            const int x = column % 80 - 40;
            const int light = (row / 64 + column / 96) % 24;
            return y * y + x * x < 16 ? RGBA32(90, 40, 40, 255)
                                      : RGBA32(static_cast<std::uint8_t>(200 + light),
                                               static_cast<std::uint8_t>(150 + light),
                                               static_cast<std::uint8_t>(120 + light), 255);
        });
    }

    void printHead(const char* what) const {
        std::cout << std::setw(8) << what << "  resident MiB  open files  states  on disk MiB\n";
    }
    void printRow(int count) const {
        const Usage now = usage();
        std::uintmax_t bytes = 0;
        for (const auto& entry : std::filesystem::directory_iterator(platform.states()))
            bytes += entry.file_size();
        std::cout << std::setw(8) << count << std::fixed << std::setprecision(0) << std::setw(14)
                  << now.residentMebibytes << std::setw(12) << now.openFiles << std::setw(8)
                  << controller->stateImagesPath.size() << std::setw(13)
                  << static_cast<double>(bytes) / (1 << 20) << std::endl;
    }

    /// Expects that the usage has not grown since all caches and the history were full.
    void expectNoGrowth(const Usage& full) {
        const Usage now = usage();
        EXPECT_EQ(now.openFiles, full.openFiles);
        if (!kKeepsFreedMemory) {
            EXPECT_LT(now.residentMebibytes, full.residentMebibytes * 1.1 + 16);
        }
    }
};

TEST_F(LongUse, OfOnePhotoNeedsNoMoreThanItsHistory) {
    const bool isFull = isFullTest();
    const PixelSize size = isFull ? PixelSize{6000, 4000} : PixelSize{900, 600};
    const int clicks = isFull ? 2000 : 200;
    const int fullAt = clicks / 4; // the history is full long before
    openThroughPanel(makePhoto("portrait.jpg", portrait(size)));
    printHead("clicks");
    printRow(0);
    Usage full;
    for (int i = 1; i <= clicks; ++i) {
        const int column = i * 7 % (size.width / 80);
        const int row = i * 11 % (size.height / 80);
        clickPixel({40 + 80 * row, 40 + 80 * column});
        queues.runAll();
        if (i % 9 == 0) {
            controller->OnUndo(nullptr);
            controller->OnUndo(nullptr);
            controller->OnRedo(nullptr);
        }
        if (i % 50 == 0)
            selectEffect(i / 50 % 9);
        if (i == fullAt)
            full = usage();
        if (i % (clicks / 10) == 0)
            printRow(i);
    }
    expectNoGrowth(full);
}

TEST_F(LongUse, OfManyPhotosNeedsNoMoreThanOne) {
    const bool isFull = isFullTest();
    const PixelSize size = isFull ? PixelSize{6000, 4000} : PixelSize{900, 600};
    const int count = isFull ? 200 : 40;
    std::vector<std::filesystem::path> photos;
    for (const char* name : {"a.jpg", "b.png", "c.tif", "d.bmp"})
        photos.push_back(makePhoto(name, portrait(size)));
    photos.push_back(makePhoto("e.gif", portrait({900, 600}))); // GIF files are small in practice
    printHead("photos");
    Usage full;
    for (int i = 1; i <= count; ++i) {
        openThroughPanel(photos[static_cast<std::size_t>(i) % photos.size()]);
        clickPixel({200, 200});
        queues.runAll();
        if (i == count / 4)
            full = usage();
        if (i % (count / 10) == 0)
            printRow(i);
    }
    expectNoGrowth(full);
}

} // namespace

} // namespace complexion
