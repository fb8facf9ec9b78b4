#include "xml/XmlNode.h"

#include "xml/RapidXml.h"
#include "xml/XmlDoc.h"

#include <cstring>
#include <string_view>

namespace {

using Element = rapidxml::xml_node<char>;

bool isElement(const Element& node) { return node.type() == rapidxml::node_element; }

/// The node itself or the first of its following siblings that is an element of that name (null: any name).
Element* elementFrom(Element* node, const char* name) {
    const std::string_view wanted = name ? name : std::string_view();
    for (; node; node = node->next_sibling()) {
        if (isElement(*node) && (!name || std::string_view(node->name(), node->name_size()) == wanted)) {
            return node;
        }
    }
    return nullptr;
}

Element* siblingAfter(Element* node) { return node->parent() ? node->next_sibling() : nullptr; }

/// Copies a text with its NUL into the document's pool.
struct PoolText {
    PoolText(rapidxml::memory_pool<char>& pool, const char* source)
        : length(std::strlen(source))
        , text(pool.allocate_string(nullptr, length + 1)) {
        std::memcpy(text, source, length + 1);
    }

    std::size_t length;
    char* text;
};

} // namespace

XmlNode::XmlNode(rapidxml::xml_node<char>* element, XmlDoc* document) noexcept
    : node(element)
    , owner(document) {}

XmlNode XmlNode::addChild(const char* name) {
    if (isNull()) {
        return {};
    }
    auto& pool = *owner->document;
    Element* child = pool.allocate_node(rapidxml::node_element);
    if (name) {
        const PoolText copy(pool, name);
        child->name(copy.text, copy.length);
    }
    node->append_node(child);
    return {child, owner};
}

XmlNode XmlNode::firstChild(const char* name) const {
    if (isNull()) {
        return {};
    }
    return {elementFrom(node->first_node(), name), owner};
}

XmlNode XmlNode::nextSibling(const char* name) const {
    if (isNull()) {
        return {};
    }
    return {elementFrom(siblingAfter(node), name), owner};
}

XmlNode XmlNode::nextInTree(const XmlNode& top) const {
    if (isNull()) {
        return {};
    }
    if (Element* child = elementFrom(node->first_node(), nullptr)) {
        return {child, owner};
    }
    for (Element* done = node; done && done != top.node; done = done->parent()) {
        if (Element* next = elementFrom(siblingAfter(done), nullptr)) {
            return {next, owner};
        }
    }
    return {};
}

rapidxml::xml_attribute<char>* XmlNode::attributeNamed(const char* name) const noexcept {
    if (isNull() || !name) {
        return nullptr;
    }
    const std::string_view wanted = name;
    for (auto* attribute = node->first_attribute(); attribute; attribute = attribute->next_attribute()) {
        if (std::string_view(attribute->name(), attribute->name_size()) == wanted) {
            return attribute;
        }
    }
    return nullptr;
}

XmlNode& XmlNode::setAttribute(const char* name, const char* value) {
    if (isNull() || !name || !value) {
        return *this;
    }
    auto& pool = *owner->document;
    const PoolText copy(pool, value);
    auto* attribute = attributeNamed(name);
    if (!attribute) {
        const PoolText nameCopy(pool, name);
        attribute = pool.allocate_attribute();
        attribute->name(nameCopy.text, nameCopy.length);
        node->append_attribute(attribute);
    }
    attribute->value(copy.text, copy.length);
    return *this;
}

std::string XmlNode::getAttribute(const char* name) const {
    const char* value = findAttribute(name);
    return value ? value : "";
}

const char* XmlNode::findAttribute(const char* name) const noexcept {
    const auto* attribute = attributeNamed(name);
    return attribute ? attribute->value() : nullptr;
}

bool XmlNode::removeAttribute(const char* name) {
    auto* attribute = attributeNamed(name);
    if (!attribute) {
        return false;
    }
    node->remove_attribute(attribute);
    return true;
}

void XmlNode::setValue(const char* text) {
    if (isNull() || !text) {
        return;
    }
    const PoolText copy(*owner->document, text);
    // The text of a parsed element stands in nodes of its own, which would print in place of the new one.
    for (Element* child = node->first_node(); child;) {
        Element* next = child->next_sibling();
        if (!isElement(*child)) {
            node->remove_node(child);
        }
        child = next;
    }
    node->value(copy.text, copy.length);
}

const char* XmlNode::getName() const noexcept { return isNull() ? "" : node->name(); }
