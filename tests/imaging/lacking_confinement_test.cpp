// SPDX-License-Identifier: GPL-3.0-or-later

// What a decoder that a stranger's file has taken over reaches where the kernel lacks landlock, seccomp, or
// both.
#include "tests/fakes/hostile_reader.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <iostream>

namespace complexion {
namespace {

class LackingConfinement : public testing::TestWithParam<Confinement> {
protected:
    LackingConfinement() : m_reader(doAsTheFileSays, GetParam()) {}

    /// What the file's deed reached.
    std::string reached(std::string_view deed) const {
        const std::filesystem::path path = m_folder.path() / "photo.bmp";
        writeFile(path, hostileFile(deed));
        const Result<FilePicture> picture = readPictureFile(path, ReadingPurpose::Edit);
        EXPECT_FALSE(picture) << deed;
        return picture ? std::string() : picture.error().message;
    }

    static bool lacksBoth() { return !GetParam().hasFileRules && !GetParam().hasCallFilter; }

private:
    TemporaryFolder m_folder;
    InstalledReader m_reader;
};

TEST_P(LackingConfinement, UsesNoMoreThanThereIs) {
    const std::string active = reached(kTellConfinement);
    std::cout << "active here: " << active << '\n';
    if (!GetParam().hasFileRules) {
        EXPECT_TRUE(active.starts_with("no landlock")) << active;
    }
    if (!GetParam().hasCallFilter) {
        EXPECT_TRUE(active.ends_with("no seccomp")) << active;
    }
}

// The limit of 0 descriptors holds everywhere. Without landlock and seccomp, names can be changed.
TEST_P(LackingConfinement, OpensNoFile) {
    const std::filesystem::path folder = "/tmp/complexion-reached";
    EXPECT_EQ(reached(kReachForFiles), lacksBoth() ? "a new folder" : "nothing");
    EXPECT_EQ(std::filesystem::remove(folder), lacksBoth());
}

TEST_P(LackingConfinement, OpensNoSocket) {
    EXPECT_EQ(reached(kReachForSockets), "nothing");
}

TEST_P(LackingConfinement, ReadsNoOtherProcess) {
    EXPECT_EQ(reached(kReachForProcesses), "nothing");
}

TEST_P(LackingConfinement, HasNoDescriptorButItsAnswer) {
    EXPECT_EQ(reached(kReachForDescriptors), "nothing");
}

TEST_P(LackingConfinement, EndsWithTheFileThatCrashesIt) {
    EXPECT_EQ(reached(kCrash), "the reader ended without an answer");
    EXPECT_EQ(reached(kReachForSockets), "nothing");
}

std::string nameOf(const testing::TestParamInfo<Confinement>& test) {
    return std::string(test.param.hasFileRules ? "Landlock" : "NoLandlock") +
           (test.param.hasCallFilter ? "Seccomp" : "NoSeccomp");
}

INSTANTIATE_TEST_SUITE_P(Kernels, LackingConfinement,
                         testing::Values(Confinement{.hasFileRules = true, .hasCallFilter = true},
                                         Confinement{.hasFileRules = true, .hasCallFilter = false},
                                         Confinement{.hasFileRules = false, .hasCallFilter = true},
                                         Confinement{.hasFileRules = false, .hasCallFilter = false}),
                         nameOf);

} // namespace
} // namespace complexion
