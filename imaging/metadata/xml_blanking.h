// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace complexion::xml {

// Changes of an XML text that keep its length: removed parts become blanks.

/// The end of the element `name` that begins at `start`; npos if it is not terminated.
std::size_t elementEnd(const std::string& xml, std::string_view name, std::size_t start);

/// Overwrites every element of this name with blanks.
void blankElements(std::string& xml, std::string_view name);

/// Overwrites every attribute and every element of this name with blanks.
void blankProperty(std::string& xml, std::string_view name);

/// The offset of the value of the next attribute or element `name` from `from` on; npos if there is none.
std::size_t findValue(std::string_view xml, std::string_view name, std::size_t from);

} // namespace complexion::xml
