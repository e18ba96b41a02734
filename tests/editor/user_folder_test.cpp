// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/user_folder.h"

#include "editor/journal_file.h"
#include "tests/fakes/environment.h"

#include <gtest/gtest.h>

namespace complexion {

namespace {

std::optional<std::filesystem::path> dataFolder(const std::optional<std::string>& data,
                                                const std::optional<std::string>& home) {
    const Environment dataVariable("XDG_DATA_HOME", data);
    const Environment homeVariable("HOME", home);
    return userFolder("XDG_DATA_HOME", ".local/share");
}

TEST(UserFolder, IsTheOneThatTheVariableNames) {
    EXPECT_EQ(dataFolder("/data", "/home/a"), "/data");
    EXPECT_EQ(dataFolder("/data", std::nullopt), "/data");
}

TEST(UserFolder, IsInTheHomeFolderIfTheVariableNamesNone) {
    EXPECT_EQ(dataFolder(std::nullopt, "/home/a"), "/home/a/.local/share");
    EXPECT_EQ(dataFolder("", "/home/a"), "/home/a/.local/share");
    EXPECT_EQ(dataFolder("relative", "/home/a"), "/home/a/.local/share");
}

TEST(UserFolder, IsUnknownWithoutAHomeFolder) {
    EXPECT_EQ(dataFolder(std::nullopt, std::nullopt), std::nullopt);
    EXPECT_EQ(dataFolder("relative", ""), std::nullopt);
    EXPECT_EQ(dataFolder("", "home"), std::nullopt);
}

TEST(UserFolder, OfTheJournalsIsInTheStateHome) {
    const auto with = [](const char* state, const char* home) {
        const Environment stateVariable("XDG_STATE_HOME", state);
        const Environment homeVariable("HOME", home);
        return journalFolder();
    };
    EXPECT_EQ(with("/states", "/home/a"), "/states/complexion");
    EXPECT_EQ(with("", "/home/a"), "/home/a/.local/state/complexion");
    EXPECT_EQ(with("", ""), std::nullopt);
}

} // namespace

} // namespace complexion
