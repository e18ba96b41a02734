// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/flat_error.h"

#include <algorithm>

namespace complexion {

namespace {

constexpr std::size_t kMaxMessage = 200;

/// Cut and without control characters: whoever reads the log reads it on a terminal.
std::string printable(std::string text) {
    text.resize(std::min(text.size(), kMaxMessage));
    std::ranges::replace_if(text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

} // namespace

void writeError(FlatWriter& writer, const Error& error) {
    writer.number(static_cast<std::uint8_t>(error.kind));
    writer.text(error.message);
}

std::optional<Error> readError(FlatReader& reader) {
    const auto kind = reader.number<std::uint8_t>();
    std::string message = printable(reader.text());
    if (kind > static_cast<std::uint8_t>(ErrorKind::FormatCannotHold))
        return std::nullopt;
    return Error{std::move(message), static_cast<ErrorKind>(kind)};
}

Error readLastError(FlatReader& reader) {
    const std::optional<Error> error = readError(reader);
    return error && reader.isWhole() ? *error : answerIsNonsense();
}

Error answerIsNonsense() {
    return Error{"the reader answered nonsense"};
}

} // namespace complexion
