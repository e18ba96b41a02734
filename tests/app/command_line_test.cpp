// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command_line.h"

#include <gmock/gmock.h>

namespace complexion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;

CommandLine parsed(std::vector<std::string> words) {
    static std::vector<std::string> kept; // the result points into it
    kept = std::move(words);
    kept.insert(kept.begin(), "complexion");
    std::vector<char*> pointers;
    for (std::string& word : kept)
        pointers.push_back(word.data());
    return CommandLine::parse(pointers);
}

TEST(CommandLine, NamesOnePhoto) {
    EXPECT_FALSE(parsed({}).photo);
    EXPECT_EQ(parsed({"a b.jpg"}).photo, "a b.jpg");
    EXPECT_EQ(parsed({"caf\xE9.jpg"}).photo, "caf\xE9.jpg");
    EXPECT_EQ(parsed({"--", "--help"}).photo, "--help");
    EXPECT_TRUE(parsed({"a.jpg"}).usageError.empty());
}

TEST(CommandLine, RefusesASecondPhoto) {
    EXPECT_THAT(parsed({"a.jpg", "b.jpg"}).usageError, HasSubstr("b.jpg"));
    EXPECT_THAT(parsed({"a.jpg", "--", "-b.jpg"}).usageError, HasSubstr("-b.jpg"));
}

TEST(CommandLine, RecognisesHelpAndVersion) {
    EXPECT_TRUE(parsed({"--help"}).help);
    EXPECT_TRUE(parsed({"-h"}).help);
    EXPECT_TRUE(parsed({"--version"}).version);
    EXPECT_FALSE(parsed({"--", "--version"}).version);
}

TEST(CommandLine, RefusesUnknownOptions) {
    for (const char* option : {"--frob", "-x", "--helpme", "-jpg", "--style2", "---"})
        EXPECT_THAT(parsed({option}).usageError, HasSubstr(option));
}

TEST(CommandLine, PassesTheToolkitsOptionsOn) {
    const CommandLine line = parsed({"-style", "Fusion", "a.jpg", "--platform=offscreen", "-reverse"});
    EXPECT_TRUE(line.usageError.empty());
    EXPECT_EQ(line.photo, "a.jpg");
    EXPECT_THAT(line.toolkitArguments, ElementsAre(StrEq("complexion"), StrEq("-style"), StrEq("Fusion"),
                                                   StrEq("--platform=offscreen"), StrEq("-reverse")));
    EXPECT_THAT(parsed({"-style"}).usageError, HasSubstr("-style"));
}

} // namespace
} // namespace complexion
