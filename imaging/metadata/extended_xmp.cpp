// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/extended_xmp.h"

#include "imaging/containers/byte_order.h"
#include "imaging/metadata/xml_elements.h"
#include "imaging/metadata/xmp_packet.h"

#include <lcms2_plugin.h>

#include <algorithm>
#include <new>
#include <vector>

namespace complexion::xmp {

namespace {

// Limits for damaged packets: attributes of the elements around the nodes, and bytes added by declaring their
// namespaces at each node.
constexpr std::size_t kMaxNamespaces = 1000;
constexpr std::size_t kMaxAddedBytes = std::size_t{1} << 20;

/// The structure of a packet: properties belong to nodes in rdf:RDF, which may be wrapped in x:xmpmeta.
struct Tree {
    xml::Element root;
    xml::Element rdf;

    /// Includes the colon; empty if there is no prefix.
    std::string_view rdfPrefix() const { return rdf.name.substr(0, rdf.name.find(':') + 1); }
};

bool isRdf(const xml::Element& element) {
    return element.name == "RDF" || element.name.ends_with(":RDF");
}

std::optional<Tree> treeOf(std::string_view xml) {
    const auto root = xml::findElement(xml, 0, xml.size());
    if (!root)
        return std::nullopt;
    if (isRdf(*root))
        return Tree{*root, *root};
    const auto rdf = xml::findElement(xml, root->contentBegin, root->contentEnd);
    if (!rdf || !isRdf(*rdf))
        return std::nullopt;
    return Tree{*root, *rdf};
}

std::string_view between(std::string_view xml, std::size_t begin, std::size_t end) {
    return xml.substr(begin, end - begin);
}

bool isNamespace(const xml::Attribute& attribute) {
    return attribute.name == "xmlns" || attribute.name.starts_with("xmlns:");
}

bool isAbout(const xml::Attribute& attribute) {
    return attribute.name == "about" || attribute.name.ends_with(":about");
}

/// Whether an attribute is a namespace declaration or RDF syntax rather than a property.
bool isContext(const xml::Attribute& attribute) {
    return isNamespace(attribute) || isAbout(attribute) || attribute.name.starts_with("xml:") ||
           attribute.name.starts_with("rdf:");
}

/// The namespace declarations in scope for all nodes; inner ones hide outer ones. nullopt if there are too
/// many.
std::optional<std::vector<xml::Attribute>> namespacesOf(std::string_view xml, const Tree& tree) {
    std::vector<xml::Attribute> found = xml::attributes(xml, tree.rdf);
    std::vector<xml::Attribute> outer;
    if (tree.root.begin != tree.rdf.begin)
        outer = xml::attributes(xml, tree.root);
    if (found.size() + outer.size() > kMaxNamespaces)
        return std::nullopt;
    for (const xml::Attribute& attribute : outer)
        if (std::ranges::find(found, attribute.name, &xml::Attribute::name) == found.end())
            found.push_back(attribute);
    std::erase_if(found, [](const xml::Attribute& attribute) { return !isNamespace(attribute); });
    return found;
}

/// A node's text with the namespace declarations of its former context, unless it redeclares them.
std::string nodeWith(const std::vector<xml::Attribute>& outer, std::string_view xml,
                     const xml::Element& node) {
    const std::size_t behindName = node.begin + 1 + node.name.size();
    const std::vector<xml::Attribute> own = xml::attributes(xml, node);
    std::string text(between(xml, node.begin, behindName));
    for (const xml::Attribute& attribute : outer)
        if (std::ranges::find(own, attribute.name, &xml::Attribute::name) == own.end())
            text.append(" ").append(attribute.whole);
    return text.append(between(xml, behindName, node.end));
}

/// The packet without the padding reserved for in-place edits.
std::string withoutPadding(std::string_view packet) {
    std::string text(packet);
    const std::size_t trailer = text.rfind("<?xpacket end");
    if (trailer == std::string::npos || trailer == 0)
        return text;
    const std::size_t last = text.find_last_not_of(" \t\r\n", trailer - 1);
    const std::size_t begin = last == std::string::npos ? 0 : last + 1;
    return text.replace(begin, trailer - begin, "\n");
}

/// The node that refers to the extension.
std::string extensionNote(std::string_view prefix, std::string_view about, std::string_view extension) {
    const std::string rdf(prefix);
    return "<" + rdf + "Description " + std::string(about) +
           R"( xmlns:xmpNote="http://ns.adobe.com/xmp/note/" xmpNote:HasExtendedXMP=")" + digest(extension) +
           "\"/>";
}

/// A property of a node: a child element or an attribute.
struct Property {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t node = 0; // index
    bool isElement = false;

    std::size_t size() const { return end - begin; }
};

std::vector<Property> propertiesOf(std::string_view xml, const std::vector<xml::Element>& nodes) {
    std::vector<Property> properties;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (const xml::Attribute& attribute : xml::attributes(xml, nodes[i]))
            if (!isContext(attribute)) {
                const auto begin = static_cast<std::size_t>(attribute.whole.data() - xml.data());
                properties.push_back({begin, begin + attribute.whole.size(), i, false});
            }
        for (const xml::Element& element : xml::children(xml, nodes[i]))
            properties.push_back({element.begin, element.end, i, true});
    }
    return properties;
}

/// A node with only the given properties, in their order.
std::string nodeOf(std::string_view xml, const xml::Element& node, std::span<const Property> properties) {
    std::string tag = "<" + std::string(node.name);
    for (const xml::Attribute& attribute : xml::attributes(xml, node))
        if (isContext(attribute))
            tag.append(" ").append(attribute.whole);
    std::string content;
    for (const Property& property : properties) {
        const std::string_view text = between(xml, property.begin, property.end);
        if (property.isElement)
            content.append(text);
        else
            tag.append(" ").append(text);
    }
    return tag + ">" + content + "</" + std::string(node.name) + ">";
}

/// Selects the largest properties until they add up to `surplus` bytes; returns them in document order.
/// nullopt if all together are too small.
std::optional<std::vector<Property>> largest(std::vector<Property> properties, std::size_t surplus) {
    std::ranges::stable_sort(properties, std::ranges::greater(), &Property::size);
    std::size_t count = 0;
    for (std::size_t gone = 0; gone < surplus; gone += properties[count++].size())
        if (count == properties.size())
            return std::nullopt;
    properties.resize(count);
    std::ranges::sort(properties, {}, &Property::begin);
    return properties;
}

/// Splits the packet: the properties in `moved`, in document order, go into the extension.
DividedPacket dividedBy(std::string_view xml, const Tree& tree, const std::vector<xml::Element>& nodes,
                        std::span<const Property> moved, std::string_view about) {
    const xml::Element& root = tree.root;
    const bool hasOuter = root.begin != tree.rdf.begin;
    DividedPacket divided;
    std::string& extension = divided.extension;
    if (hasOuter)
        extension += between(xml, root.begin, root.contentBegin);
    extension += between(xml, tree.rdf.begin, tree.rdf.contentBegin);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < moved.size();) {
        const std::size_t node = moved[i].node;
        std::size_t end = i;
        for (; end < moved.size() && moved[end].node == node; ++end) {
            divided.main += between(xml, kept, moved[end].begin);
            kept = moved[end].end;
        }
        extension += nodeOf(xml, nodes[node], moved.subspan(i, end - i));
        i = end;
    }
    extension += between(xml, tree.rdf.contentEnd, tree.rdf.end);
    if (hasOuter)
        extension += between(xml, root.contentEnd, root.end);
    divided.main += between(xml, kept, tree.rdf.contentEnd);
    divided.main += extensionNote(tree.rdfPrefix(), about, extension);
    divided.main += xml.substr(tree.rdf.contentEnd);
    return divided;
}

/// A main packet that contains only the reference to the extension.
DividedPacket allInExtension(std::string_view xml) {
    DividedPacket divided;
    const auto root = xml::findElement(xml, 0, xml.size());
    divided.extension = root ? between(xml, root->begin, root->end) : xml;
    divided.main = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
                   "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">" +
                   extensionNote("rdf:", "rdf:about=\"\"", divided.extension) + "</rdf:RDF></x:xmpmeta>";
    return divided;
}

} // namespace

std::string digest(std::string_view packet) {
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    static constexpr std::size_t kStep = std::size_t{1} << 30; // the library counts in 32 bits
    void* const digester = cmsMD5alloc(nullptr);
    if (!digester)
        throw std::bad_alloc();
    for (std::size_t at = 0; at < packet.size(); at += kStep) {
        const ByteView part = slice(bytesOf(packet), at, kStep);
        cmsMD5add(digester, part.data(), static_cast<cmsUInt32Number>(part.size()));
    }
    cmsProfileID digest{};
    cmsMD5finish(&digest, digester);
    std::string digits;
    for (const cmsUInt8Number byte : digest.ID8) {
        digits += kDigits[byte >> 4];
        digits += kDigits[byte & 15];
    }
    return digits;
}

DividedPacket divided(std::string_view packet, std::size_t maxMainLength) {
    if (packet.size() <= maxMainLength)
        return {std::string(packet), {}};
    const std::string xml = withoutPadding(packet);
    if (xml.size() <= maxMainLength)
        return {xml, {}};
    const auto tree = treeOf(xml);
    if (!tree)
        return allInExtension(xml);
    const std::vector<xml::Element> nodes = xml::children(xml, tree->rdf);
    // All nodes of a packet have the same subject (XMP Specification Part 1).
    std::string about = std::string(tree->rdfPrefix()) + "about=\"\"";
    for (const xml::Element& node : nodes)
        for (const xml::Attribute& attribute : xml::attributes(xml, node))
            if (isAbout(attribute))
                about = attribute.whole;
    const std::size_t surplus =
        xml.size() + extensionNote(tree->rdfPrefix(), about, {}).size() - maxMainLength;
    const auto moved = largest(propertiesOf(xml, nodes), surplus);
    return moved ? dividedBy(xml, *tree, nodes, *moved, about) : allInExtension(xml);
}

std::optional<std::string> joined(std::string_view main, std::string_view extension) {
    const auto mainTree = treeOf(main);
    const auto extensionTree = treeOf(extension);
    if (!mainTree || !extensionTree || mainTree->rdf.contentEnd == mainTree->rdf.end)
        return std::nullopt;
    const auto known = namespacesOf(main, *mainTree);
    auto foreign = namespacesOf(extension, *extensionTree);
    if (!known || !foreign)
        return std::nullopt;
    std::size_t foreignBytes = 0;
    std::erase_if(*foreign, [&known](const xml::Attribute& attribute) {
        return std::ranges::any_of(*known, [&attribute](const xml::Attribute& other) {
            return other.name == attribute.name && other.value == attribute.value;
        });
    });
    for (const xml::Attribute& attribute : *foreign)
        foreignBytes += attribute.whole.size() + 1;
    const std::vector<xml::Element> nodes = xml::children(extension, extensionTree->rdf);
    if (foreignBytes > kMaxAddedBytes || foreignBytes * nodes.size() > kMaxAddedBytes)
        return std::nullopt;
    std::string joined(main.substr(0, mainTree->rdf.contentEnd));
    for (const xml::Element& node : nodes)
        joined += nodeWith(*foreign, extension, node);
    joined += main.substr(mainTree->rdf.contentEnd);
    const Bytes one = withoutExtension(bytesOf(joined));
    return std::string(textOf(one));
}

} // namespace complexion::xmp
