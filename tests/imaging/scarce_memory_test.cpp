// SPDX-License-Identifier: GPL-3.0-or-later

// Reads and writes files in processes with limited memory: too little memory is an error, never a crash.
#include "imaging/image_tools.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <optional>
#include <unistd.h>

namespace complexion {
namespace {

constexpr PixelSize kLargeSize{2400, 1600};
constexpr rlim_t kMinMemory = rlim_t{1} << 16;
constexpr rlim_t kMaxMemory = rlim_t{1} << 30;

/// The size of this process's address space in bytes.
rlim_t addressSpace() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

void limitAddressSpace(rlim_t bytes) {
    rlimit limit = {};
    ::getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_AS, &limit);
}

/// Allocates all memory that is free on the heap, and leaks it. The address space must be limited.
void exhaustHeap() {
    for (std::size_t block = std::size_t{1} << 22; block >= 32; block /= 2) {
        void* volatile taken = nullptr; // volatile, so that the allocation is not optimised away
        do
            taken = std::malloc(block);
        while (taken != nullptr);
    }
}

/// Runs `work` in a child process that may allocate `memory` bytes. Returns its result; none if it crashed.
std::optional<bool> resultWithin(rlim_t memory, const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        const rlim_t taken = addressSpace();
        limitAddressSpace(taken);
        exhaustHeap();
        limitAddressSpace(taken + memory);
        try {
            ::_exit(work() ? 1 : 0);
        } catch (const std::exception&) {
            std::abort();
        }
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status) == 1) : std::nullopt;
}

/// A picture of few colours, which every format encodes quickly.
Image shaded() {
    return painted(kLargeSize, [](int row, int column) { return grey((row / 8 + column / 8) % 200); });
}

class ScarceMemory : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "sanitizers reserve address space";
#endif
    }

    /// Runs `work` with more and more memory. Expects that it fails at first, succeeds in the end, and never
    /// crashes.
    static void expectNoCrash(const std::function<bool()>& work) {
        int refused = 0;
        std::optional<bool> last;
        for (rlim_t memory = kMinMemory; memory <= kMaxMemory; memory *= 2) {
            last = resultWithin(memory, work);
            EXPECT_TRUE(last) << "crashed with " << memory << " bytes";
            refused += last == false ? 1 : 0;
        }
        EXPECT_GT(refused, 0);
        EXPECT_EQ(last, true);
    }

    std::string format = GetParam();
    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / ("picture." + format);
};

INSTANTIATE_TEST_SUITE_P(Formats, ScarceMemory, testing::Values("jpg", "png", "tiff", "gif", "bmp"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(ScarceMemory, NeverCrashesOpening) {
    ASSERT_TRUE(ImageTools::SaveImage(shaded(), path, format));
    expectNoCrash([&] { return ImageTools::DecodeImage(path).has_value(); });
}

TEST_P(ScarceMemory, NeverCrashesSaving) {
    const Image image = shaded();
    expectNoCrash([&] {
        std::filesystem::remove(path);
        return ImageTools::SaveImage(image, path, format) && std::filesystem::exists(path);
    });
    EXPECT_EQ(decoded(path).pixelSize(), kLargeSize);
}

} // namespace
} // namespace complexion
