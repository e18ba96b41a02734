// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/system_calls.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace complexion {

/// The number of open descriptors.
inline std::size_t openFileCount() {
    return filesIn("/proc/self/fd").size();
}

/// A folder with an old file, and helpers to replace it.
class FileFaults : public testing::Test {
protected:
    FileFaults() { writeFile(m_path, "an older file"); }

    /// Parts of 0 to 6 bytes, 1500 bytes in total.
    static FileContents manyParts() {
        FileContents contents;
        for (int i = 0; i < 500; ++i)
            contents.append(Bytes(static_cast<std::size_t>(i % 7), static_cast<std::uint8_t>(i)));
        return contents;
    }

    bool write() const { return static_cast<bool>(writeFileAtomically(m_path, manyParts())); }

    void expectWritten() const {
        const Bytes whole = manyParts().joined();
        EXPECT_EQ(contentsOf(m_path), std::string(whole.begin(), whole.end()));
        EXPECT_EQ(filesIn(m_folder.path()), std::vector<std::string>{"photo"});
    }
    void expectUnchanged() const {
        EXPECT_EQ(contentsOf(m_path), "an older file");
        EXPECT_EQ(filesIn(m_folder.path()), std::vector<std::string>{"photo"});
    }

    /// Expects that a failure of this call makes writing fail and leaves only the old file.
    void expectFailureWith(SystemCall call, int error, int skipped = 0) const {
        const std::size_t before = openFileCount();
        const FailingCalls failing(call, error, 1, skipped);
        EXPECT_FALSE(write());
        EXPECT_EQ(failing.failedCount(), 1);
        expectUnchanged();
        EXPECT_EQ(openFileCount(), before);
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder.path() / "photo";
};

} // namespace complexion
