// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/xmp_packet.h"

#include "imaging/metadata/text_encoding.h"
#include "imaging/metadata/xml_blanking.h"

#include <array>
#include <string>
#include <string_view>

namespace complexion::xmp {

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

} // namespace

Bytes inUtf8(ByteView packet) {
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

Bytes toCarry(ByteView packet) {
    const Bytes utf8 = inUtf8(packet);
    std::string xml(textOf(utf8));
    for (const std::string_view name : kPictures)
        xml::blankProperty(xml, name);
    if (xml == textOf(utf8))
        return {packet.begin(), packet.end()};
    return bytesOfText(xml);
}

Bytes upright(ByteView packet) {
    std::string xml(textOf(packet));
    for (std::size_t at = 0; (at = xml::findValue(xml, kOrientationName, at)) != std::string::npos; ++at)
        if (at < xml.size() && xml[at] >= '1' && xml[at] <= '8')
            xml[at] = '1';
    return bytesOfText(xml);
}

std::string_view extensionDigest(std::string_view packet) {
    const std::size_t value = xml::findValue(packet, kExtensionName, 0);
    if (value == std::string_view::npos)
        return {};
    const std::string_view rest = packet.substr(value);
    return rest.substr(0, rest.find_first_of("\"'<"));
}

Bytes withoutExtension(ByteView packet) {
    std::string xml(textOf(packet));
    xml::blankProperty(xml, kExtensionName);
    return bytesOfText(xml);
}

} // namespace complexion::xmp
