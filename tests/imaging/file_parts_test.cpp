// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/files.h"
#include "tests/fakes/coded_files.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

TEST(WriteFileAtomically, WritesMorePartsThanTheSystemTakesAtOnceAndSkipsEmptyOnes) {
    FileContents contents;
    contents.append({});
    for (int i = 0; i < 5000; ++i)
        contents.append(Bytes(static_cast<std::size_t>(i % 7), static_cast<std::uint8_t>(i)));
    contents.append({});
    const TemporaryFolder folder;
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", contents));
    EXPECT_TRUE(*readFile(folder.path() / "a") == joined(contents));
    ASSERT_TRUE(writeFileAtomically(folder.path() / "a", {}));
    EXPECT_TRUE(readFile(folder.path() / "a")->empty());
}

} // namespace
} // namespace complexion
