// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/reading/picture_reading.h"

#include <gtest/gtest.h>

namespace complexion {

/// Has files read in children of a reader process, as long as it lives.
class InstalledReader {
public:
    explicit InstalledReader(ChildWork work = answerReading) {
        Result<std::shared_ptr<ReaderProcess>> process = ReaderProcess::start(work);
        EXPECT_TRUE(process);
        if (process)
            installReader(*process);
    }
    InstalledReader(const InstalledReader&) = delete;
    InstalledReader& operator=(const InstalledReader&) = delete;
    ~InstalledReader() { installReader(nullptr); }
};

} // namespace complexion
