// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"

#include <exception>
#include <new>
#include <system_error>

namespace complexion {

/// `work()`'s Result; an exception of it as an error. The border between code that throws when memory is
/// lacking and code that works with values.
template <class Work>
auto withoutThrowing(const Work& work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return Error{"out of memory", ErrorKind::OutOfMemory}; // short: takes no memory itself
    } catch (const std::system_error& error) {                 // no thread can be started
        return Error{error.what(), ErrorKind::OutOfMemory};
    } catch (const std::exception& exception) {
        return Error{exception.what()};
    }
}

} // namespace complexion
