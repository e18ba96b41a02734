// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace complexion::xml {

/// An element of an XML text, as offsets into the text. An empty-element tag has empty content at its end.
struct Element {
    std::string_view name;
    /// From its first "<" to just after its last ">".
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t contentBegin = 0;
    std::size_t contentEnd = 0;
};

/// An attribute of a start tag: the whole `name="value"`, the name, and the value without quotes.
struct Attribute {
    std::string_view name;
    std::string_view value;
    std::string_view whole;
};

/// The first element of `xml` between two offsets; nullopt if there is none, if it does not end there, or if
/// a document type declaration, which could define entities, precedes its end. Takes linear time and constant
/// memory at any nesting depth.
std::optional<Element> findElement(std::string_view xml, std::size_t from, std::size_t to);

std::vector<Element> children(std::string_view xml, const Element& element);

std::vector<Attribute> attributes(std::string_view xml, const Element& element);

} // namespace complexion::xml
