// SPDX-License-Identifier: GPL-3.0-or-later

// Files are read and written in processes that may take only so much more memory: too little is an answer,
// never the end of the program.
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

constexpr PixelSize kSize{2400, 1600};
constexpr rlim_t kMinMemory = rlim_t{1} << 16;
constexpr rlim_t kMaxMemory = rlim_t{1} << 30;

/// The bytes of this process's address space.
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

/// Takes, for good, what earlier work left free inside this process, whose address space may grow no more.
void takeWhatIsFree() {
    for (std::size_t block = std::size_t{1} << 22; block >= 32; block /= 2) {
        void* volatile taken = nullptr; // so that the compiler leaves the taking in place
        do
            taken = std::malloc(block);
        while (taken != nullptr);
    }
}

/// What `work` answers in a process that may take `memory` more bytes; none when that process died.
std::optional<bool> answerWithin(rlim_t memory, const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        const rlim_t taken = addressSpace();
        limitAddressSpace(taken);
        takeWhatIsFree();
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

/// Few colours, so that each format takes little time.
Image shaded() {
    return painted(kSize, [](int row, int column) { return grey((row / 8 + column / 8) % 200); });
}

class ScarceMemory : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "sanitizers take address space of their own";
#endif
    }

    /// `work` in ever more memory: refused at first, done in the end, and alive all the time.
    static void expectAnswers(const std::function<bool()>& work) {
        int refused = 0;
        std::optional<bool> last;
        for (rlim_t memory = kMinMemory; memory <= kMaxMemory; memory *= 2) {
            last = answerWithin(memory, work);
            EXPECT_TRUE(last) << "died with " << memory << " bytes";
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

TEST_P(ScarceMemory, RefusesAFileOrOpensIt) {
    ASSERT_TRUE(ImageTools::SaveImage(shaded(), path, format));
    expectAnswers([&] { return ImageTools::DecodeImage(path).has_value(); });
}

TEST_P(ScarceMemory, LeavesAWholeFileOrNone) {
    const Image image = shaded();
    expectAnswers([&] {
        std::filesystem::remove(path);
        return ImageTools::SaveImage(image, path, format) && std::filesystem::exists(path);
    });
    EXPECT_EQ(decoded(path).pixelSize(), kSize);
}

} // namespace
} // namespace complexion
