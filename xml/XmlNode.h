/// Handles on the elements of an XML document.
#pragma once

#include <string>

namespace rapidxml {
template <class Ch>
class xml_attribute;
template <class Ch>
class xml_document;
template <class Ch>
class xml_node;
} // namespace rapidxml

class XmlDoc;

/// A cheap handle on one element. Copies refer to the same element; a handle must not outlive its document.
/// Every operation tolerates a null handle, so that attributes can be read from an element that may not
/// exist. Names are compared exactly.
class XmlNode {
public:
    XmlNode() = default;
    XmlNode(rapidxml::xml_node<char>* element, XmlDoc* document) noexcept;
    XmlNode(const XmlNode&) = default;
    XmlNode& operator=(const XmlNode&) = default;
    virtual ~XmlNode() = default;

    bool isNull() const noexcept { return !node || !owner; }

    /// Appends a child element; a null name makes it nameless. Null handle: null handle.
    XmlNode addChild(const char* name);
    /// The first child element of that name, or of any name for null; a null handle if there is none.
    XmlNode firstChild(const char* name) const;
    /// The same, walking forward among the siblings.
    XmlNode nextSibling(const char* name) const;
    /// The element that follows in document order within the tree below `top`; a null handle behind its last.
    XmlNode nextInTree(const XmlNode& top) const;

    /// Replaces the value of the attribute of that name in its place, or else appends the attribute, so that
    /// attributes print in the order of their first assignment. Does nothing if `name` or `value` is null.
    XmlNode& setAttribute(const char* name, const char* value);
    /// The attribute's value; empty if there is no such attribute.
    std::string getAttribute(const char* name) const;
    /// The same without a copy, for as long as the document lives; null if there is no such attribute.
    const char* findAttribute(const char* name) const noexcept;
    /// Whether there was such an attribute.
    bool removeAttribute(const char* name);

    /// Replaces the element's own text; null does nothing. An element that has child elements prints them in
    /// place of a text that was set.
    void setValue(const char* text);
    /// The element's name, without a copy, for as long as the document lives; empty for a null handle.
    const char* getName() const noexcept;

private:
    rapidxml::xml_attribute<char>* attributeNamed(const char* name) const noexcept;

    rapidxml::xml_node<char>* node = nullptr; ///< not owned
    XmlDoc* owner = nullptr;                  ///< not owned
};
