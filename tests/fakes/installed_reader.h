// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/picture_reading.h"

#include <gtest/gtest.h>

namespace complexion {

/// Has files read in children of a reader process, as long as it lives.
class InstalledReader {
public:
    /// `usable` are the mechanisms that may confine children.
    explicit InstalledReader(ChildWork work = answerReading,
                             Confinement usable = {.hasFileRules = true, .hasCallFilter = true}) {
        install(ReaderProcess::start(work, {}, usable));
    }
    InstalledReader(const InstalledReader&) = delete;
    InstalledReader& operator=(const InstalledReader&) = delete;
    ~InstalledReader() { installReader(nullptr); }

private:
    void install(const Result<std::shared_ptr<ReaderProcess>>& process) {
        EXPECT_TRUE(process);
        if (process)
            installReader(*process);
    }
};

} // namespace complexion
