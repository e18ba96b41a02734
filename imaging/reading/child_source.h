// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/descriptor.h"
#include "imaging/reading/answer_channel.h"
#include "imaging/reading/confinement.h"

#include <array>

namespace complexion {

/// What a child does with its input, and answers.
using ChildWork = void (*)(std::uint32_t operation, ByteView input, AnswerSender& answer,
                           const Confinement& confinement);

/// What the program asks of the process that forks children.
struct ChildRequest {
    enum class Kind : std::uint32_t {
        Begin, // fork a child; answered with its process id, or a negative number
        End,   // kill child `child`; not answered
    };
    Kind kind = Kind::End;
    std::int32_t child = 0;
    std::uint32_t operation = 0;
    std::uint64_t length = 0; // of the input
    ReaderLimits limits;
};

/// What comes with a request to begin.
struct ChildDescriptors {
    Descriptor input;
    Descriptor socket;
    Descriptor memory;
};

/// Sends a request, with the descriptors for one to begin. False when the process is gone.
bool sendRequest(int control, const ChildRequest& request, const std::array<int, 3>* descriptors = nullptr);

/// Forks children until the other end of `control` is closed. `usable` are the mechanisms to confine them
/// with, where the kernel has them.
[[noreturn]] void forkChildren(Descriptor control, ChildWork work, Confinement usable);

} // namespace complexion
