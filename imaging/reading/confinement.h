// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion {

// The rights that a process gives up before it parses untrusted bytes.

/// How much a process may use.
struct ReaderLimits {
    std::uint64_t memory = 0;     // bytes of address space, beyond what it has when it is confined
    std::uint64_t cpuSeconds = 0; // of all threads together
};

/// The mechanisms that are active, or that may be used. The kernel may lack either.
struct Confinement {
    bool hasFileRules = false;  // landlock: no file can be opened, no port bound or connected
    bool hasCallFilter = false; // seccomp: only the system calls that decoding takes
};

/// The system calls that decoding takes, as a filter for the kernel; empty where it has no filters. Those on
/// descriptors are limited to `socket`, to which a process may send and from which it may receive.
Bytes systemCallFilter(int socket);

/// Limits this process for the rest of its life: resources, privileges, core dumps, debuggers, an empty
/// environment and, with FileRules::Forbid, files. What it has open, it keeps. Does not set the filter yet:
/// that allows too little for what comes between.
enum class FileRules { Keep, Forbid };
Confinement confineThisProcess(const ReaderLimits& limits, ByteView filter, FileRules rules);

/// Sets the filter, for all threads to come. False when the kernel refuses it.
bool setSystemCallFilter(ByteView filter);

} // namespace complexion
