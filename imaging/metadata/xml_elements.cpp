// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/xml_elements.h"

#include <algorithm>
#include <array>

namespace complexion::xml {

namespace {

constexpr std::string_view kBlank = " \t\r\n";

/// A tag or other markup in angle brackets.
struct Markup {
    enum class Kind { Start, End, Empty, Other };

    Kind kind = Kind::Other;
    std::string_view name;
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Markup whose content is skipped.
struct Skipped {
    std::string_view open;
    std::string_view close;
};
constexpr std::array<Skipped, 3> kSkipped = {{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};

/// The position of the ">" that ends the tag at `begin`, ignoring quoted ones.
std::size_t tagClose(std::string_view xml, std::size_t begin) {
    std::size_t at = begin;
    for (;;) {
        at = xml.find_first_of("\"'>", at);
        if (at == std::string_view::npos || xml[at] == '>')
            return at;
        at = xml.find(xml[at], at + 1);
        if (at == std::string_view::npos)
            return at;
        ++at;
    }
}

std::string_view nameAt(std::string_view xml, std::size_t begin) {
    const std::size_t end = xml.find_first_of(" \t\r\n/>=", begin);
    return xml.substr(begin, end == std::string_view::npos ? end : end - begin);
}

/// The first markup of `xml` from `from` on; nullopt if there is none or it is not terminated.
std::optional<Markup> nextMarkup(std::string_view xml, std::size_t from) {
    Markup markup;
    markup.begin = xml.find('<', from);
    if (markup.begin == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = xml.substr(markup.begin);
    for (const Skipped& skipped : kSkipped)
        if (rest.starts_with(skipped.open)) {
            const std::size_t close = rest.find(skipped.close, skipped.open.size());
            if (close == std::string_view::npos)
                return std::nullopt;
            markup.end = markup.begin + close + skipped.close.size();
            return markup;
        }
    const std::size_t close = tagClose(xml, markup.begin);
    if (close == std::string_view::npos || rest.starts_with("<!"))
        return std::nullopt;
    markup.end = close + 1;
    const bool isEnd = rest.starts_with("</");
    markup.name = nameAt(xml, markup.begin + (isEnd ? 2 : 1));
    markup.kind = isEnd                   ? Markup::Kind::End
                  : xml[close - 1] == '/' ? Markup::Kind::Empty
                                          : Markup::Kind::Start;
    return markup;
}

} // namespace

std::optional<Element> findElement(std::string_view xml, std::size_t from, std::size_t to) {
    xml = xml.substr(0, to);
    Element element;
    std::size_t depth = 0;
    for (std::size_t at = from;;) {
        const std::optional<Markup> markup = nextMarkup(xml, at);
        if (!markup)
            return std::nullopt;
        at = markup->end;
        if (markup->kind == Markup::Kind::Other)
            continue;
        if (depth == 0) {
            if (markup->kind == Markup::Kind::End)
                return std::nullopt;
            element = {markup->name, markup->begin, markup->end, markup->end, markup->end};
        }
        if (markup->kind == Markup::Kind::Start)
            ++depth;
        else if (markup->kind == Markup::Kind::End)
            --depth;
        if (depth > 0)
            continue;
        element.end = markup->end;
        if (markup->kind == Markup::Kind::End) {
            element.contentEnd = markup->begin;
            if (markup->name != element.name)
                return std::nullopt;
        }
        return element;
    }
}

std::vector<Element> children(std::string_view xml, const Element& element) {
    std::vector<Element> children;
    std::size_t at = element.contentBegin;
    while (const auto child = findElement(xml, at, element.contentEnd)) {
        children.push_back(*child);
        at = child->end;
    }
    return children;
}

std::vector<Attribute> attributes(std::string_view xml, const Element& element) {
    std::vector<Attribute> attributes;
    const std::string_view tag = xml.substr(0, element.contentBegin);
    std::size_t at = element.begin + 1 + element.name.size();
    for (;;) {
        const std::size_t begin = tag.find_first_not_of(kBlank, at);
        if (begin == std::string_view::npos)
            return attributes;
        const std::string_view name = nameAt(tag, begin);
        const std::size_t quote = tag.find_first_of("\"'", begin);
        if (name.empty() || quote == std::string_view::npos)
            return attributes;
        const std::size_t close = tag.find(tag[quote], quote + 1);
        if (close == std::string_view::npos)
            return attributes;
        attributes.push_back(
            {name, tag.substr(quote + 1, close - quote - 1), tag.substr(begin, close + 1 - begin)});
        at = close + 1;
    }
}

} // namespace complexion::xml
