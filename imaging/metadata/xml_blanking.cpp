// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/xml_blanking.h"

namespace complexion::xml {

namespace {

bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

/// The offset of the value of the attribute whose name ends at `at`; npos if there is none.
std::size_t attributeValue(std::string_view xml, std::size_t at) {
    while (at < xml.size() && (isBlank(xml[at]) || xml[at] == '='))
        ++at;
    return at < xml.size() && (xml[at] == '"' || xml[at] == '\'') ? at + 1 : std::string_view::npos;
}

/// Overwrites every attribute of this name with blanks.
void blankAttributes(std::string& xml, std::string_view name) {
    std::size_t at = 0;
    while ((at = xml.find(name, at)) != std::string::npos) {
        const std::size_t behind = at + name.size();
        const std::size_t value =
            at > 0 && isBlank(xml[at - 1]) ? attributeValue(xml, behind) : std::string::npos;
        const std::size_t close = value == std::string::npos ? value : xml.find(xml[value - 1], value);
        if (close != std::string::npos)
            xml.replace(at, close + 1 - at, close + 1 - at, ' ');
        at = behind;
    }
}

} // namespace

std::size_t elementEnd(const std::string& xml, std::string_view name, std::size_t start) {
    std::size_t end = xml.find('>', start);
    if (end != std::string::npos && xml[end - 1] != '/') {
        end = xml.find("</" + std::string(name), end);
        end = xml.find('>', end == std::string::npos ? xml.size() : end);
    }
    return end == std::string::npos ? end : end + 1;
}

void blankElements(std::string& xml, std::string_view name) {
    const std::string open = "<" + std::string(name);
    std::size_t start = xml.find(open);
    while (start != std::string::npos) {
        const std::size_t end = elementEnd(xml, name, start);
        if (end == std::string::npos)
            return;
        xml.replace(start, end - start, end - start, ' ');
        start = xml.find(open, end);
    }
}

void blankProperty(std::string& xml, std::string_view name) {
    blankElements(xml, name);
    blankAttributes(xml, name);
}

std::size_t findValue(std::string_view xml, std::string_view name, std::size_t from) {
    for (std::size_t at = from; (at = xml.find(name, at)) != std::string::npos; at += name.size()) {
        const std::size_t behind = at + name.size();
        if (behind < xml.size() && xml[behind] == '>' && at > 0 && xml[at - 1] == '<')
            return behind + 1;
        const std::size_t value = attributeValue(xml, behind);
        if (value != std::string_view::npos)
            return value;
    }
    return std::string::npos;
}

} // namespace complexion::xml
