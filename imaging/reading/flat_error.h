// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/reading/flat_bytes.h"

#include <optional>

namespace complexion {

void writeError(FlatWriter& writer, const Error& error);

/// The error, with a message for a terminal; nothing if there is none.
std::optional<Error> readError(FlatReader& reader);

/// The error that is all that is left to read; answerIsNonsense if there is anything else.
Error readLastError(FlatReader& reader);

/// The error for bytes that no intact child sends.
Error answerIsNonsense();

} // namespace complexion
