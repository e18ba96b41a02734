// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/xmp_packet.h"

#include "imaging/metadata/text_encoding.h"

#include <array>
#include <string>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

// Pictures of the unretouched photo: thumbnails (XMP Specification Part 1 and 2; older software uses the
// prefix "xap"), and the sharp original of a photo that the camera blurred by its depth map.
constexpr std::array<std::string_view, 3> kPictures = {"xmp:Thumbnails", "xap:Thumbnails", "GImage:Data"};
constexpr std::string_view kOrientationName = "tiff:Orientation";
constexpr std::string_view kExtensionName = "xmpNote:HasExtendedXMP";

Bytes bytesOfText(const std::string& text) {
    return {text.begin(), text.end()};
}

/// The end of the element `name` that begins at `start`; npos if it is not terminated.
std::size_t elementEnd(const std::string& xml, std::string_view name, std::size_t start) {
    std::size_t end = xml.find('>', start);
    if (end != std::string::npos && xml[end - 1] != '/') {
        end = xml.find("</" + std::string(name), end);
        end = xml.find('>', end == std::string::npos ? xml.size() : end);
    }
    return end == std::string::npos ? end : end + 1;
}

/// Overwrites every element of this name with blanks.
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

void blankProperty(std::string& xml, std::string_view name) {
    blankElements(xml, name);
    blankAttributes(xml, name);
}

/// The offset of the value of the next attribute or element `name` from `from` on; npos if there is none.
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

} // namespace

Bytes xmpInUtf8(ByteView packet) {
    // An XML text begins with "<" or a byte order mark.
    std::string xml;
    if (startsWith(packet, "\xfe\xff"sv) || startsWith(packet, "\0<"sv))
        xml = utf8FromUtf16(packet, ByteOrder::BigEndian);
    else if (startsWith(packet, "\xff\xfe"sv) || startsWith(packet, "<\0"sv))
        xml = utf8FromUtf16(packet, ByteOrder::LittleEndian);
    else
        xml = textOf(packet);
    while (!xml.empty() && xml.back() == '\0')
        xml.pop_back();
    return bytesOfText(xml);
}

Bytes xmpToCarry(ByteView packet) {
    const Bytes utf8 = xmpInUtf8(packet);
    std::string xml(textOf(utf8));
    for (const std::string_view name : kPictures)
        blankProperty(xml, name);
    if (xml == textOf(utf8))
        return {packet.begin(), packet.end()};
    return bytesOfText(xml);
}

Bytes xmpUpright(ByteView packet) {
    std::string xml(textOf(packet));
    for (std::size_t at = 0; (at = findValue(xml, kOrientationName, at)) != std::string::npos; ++at)
        if (at < xml.size() && xml[at] >= '1' && xml[at] <= '8')
            xml[at] = '1';
    return bytesOfText(xml);
}

std::string_view xmpExtensionDigest(std::string_view packet) {
    const std::size_t value = findValue(packet, kExtensionName, 0);
    if (value == std::string_view::npos)
        return {};
    const std::string_view rest = packet.substr(value);
    return rest.substr(0, rest.find_first_of("\"'<"));
}

Bytes xmpWithoutExtension(ByteView packet) {
    std::string xml(textOf(packet));
    blankProperty(xml, kExtensionName);
    return bytesOfText(xml);
}

} // namespace complexion
