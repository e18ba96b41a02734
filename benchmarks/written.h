// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion::bench {

/// What this process has passed to the system's disks since it was started. Unlike the time that writing
/// takes, it does not depend on the disk.
struct Written {
    double bytes = 0;
    double flushes = 0; ///< calls of fsync, fdatasync and syncfs
};
Written written();

} // namespace complexion::bench
