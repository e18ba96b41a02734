// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"

#include <exception>
#include <new>
#include <system_error>

namespace complexion {

/// Calls `work` and returns its Result; converts an exception to an error. The boundary between code that may
/// throw std::bad_alloc and code that returns values.
template <class Work>
auto withoutThrowing(const Work& work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return Error{"out of memory", ErrorKind::OutOfMemory}; // short enough to need no memory
    } catch (const std::system_error& error) {                 // no thread can be started
        return Error{error.what(), ErrorKind::OutOfMemory};
    } catch (const std::exception& exception) {
        return Error{exception.what()};
    }
}

} // namespace complexion
