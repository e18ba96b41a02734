// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"

#include <exception>

namespace complexion {

/// `work()`'s Result; an exception of it (memory is lacking, no thread can be started) as an error.
template <class Work>
auto withoutThrowing(const Work& work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::exception& exception) {
        return Error{exception.what()};
    }
}

} // namespace complexion
