#include "xml/XmlDoc.h"

#include "xml/RapidXml.h"
#include "xml/XmlDepth.h"

#include <cstring>
#include <iterator>

namespace {

/// Enough for the text of most notices, so that it is allocated once.
constexpr std::size_t usualTextSize = 1536;

} // namespace

XmlDoc::XmlDoc()
    : document(std::make_unique<rapidxml::xml_document<char>>()) {}

XmlDoc::~XmlDoc() = default;

XmlNode XmlDoc::addNode(const char* name) {
    if (!name) {
        return {};
    }
    return XmlNode(document.get(), this).addChild(name);
}

bool XmlDoc::parse(const char* text) {
    if (!text) {
        return false;
    }
    // Copied before the old content goes: the text may be part of it.
    std::vector<char> copy(text, text + std::strlen(text) + 1);
    buffer.swap(copy);
    if (nestsDeeperThan(buffer.data(), deepestXmlNesting)) {
        document->clear();
        return false;
    }
    try {
        document->parse<rapidxml::parse_default>(buffer.data());
    } catch (const rapidxml::parse_error&) {
        document->clear();
        return false;
    }
    return true;
}

XmlNode XmlDoc::firstNode(const char* name) {
    return name ? XmlNode(document.get(), this).firstChild(name) : XmlNode();
}

std::string XmlDoc::serialize() const {
    const auto* element = document->first_node();
    while (element && element->type() != rapidxml::node_element) {
        element = element->next_sibling();
    }
    std::string text;
    if (element) {
        text.reserve(usualTextSize);
        rapidxml::print(std::back_inserter(text), *element);
    }
    return text;
}
