// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace complexion {

/// An element of an XML text, by its places in the text. Its content is empty and lies at its end where it is
/// but one tag.
struct XmlElement {
    std::string_view name;
    /// From its "<" to behind its last ">".
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t contentBegin = 0;
    std::size_t contentEnd = 0;
};

/// What stands in a start tag: the whole `name="value"`, and its halves; the value is without quotes.
struct XmlAttribute {
    std::string_view name;
    std::string_view value;
    std::string_view whole;
};

/// The first element of `xml` between two places. Nothing when there is none, when it does not end there, or
/// when a document type comes before its end, which could define entities. Costs time but no memory in
/// proportion to the text, however it is nested.
std::optional<XmlElement> findXmlElement(std::string_view xml, std::size_t from, std::size_t to);

std::vector<XmlElement> xmlChildren(std::string_view xml, const XmlElement& element);

std::vector<XmlAttribute> xmlAttributes(std::string_view xml, const XmlElement& element);

} // namespace complexion
