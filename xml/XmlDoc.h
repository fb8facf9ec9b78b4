/// One XML document.
#pragma once

#include "common2/data/TextBuffer.h"
#include "xml/XmlNode.h"

#include <memory>
#include <string>
#include <vector>

/// Owns a parsed or growing document: its elements, attributes and strings. Strings handed in are copied, so
/// a caller's temporary may die at once. Texts are UTF-8 and end at their first NUL. A document has no lock:
/// it belongs to one thread at a time. Names are compared exactly. Allocation failures propagate.
class XmlDoc {
public:
    XmlDoc();
    XmlDoc(const XmlDoc&) = delete;
    XmlDoc& operator=(const XmlDoc&) = delete;
    virtual ~XmlDoc();

    /// Appends an element at document level. A null name gives a null handle.
    virtual XmlNode addNode(const char* name);

    /// Replaces the document by what the text holds, which may be nothing. Handles taken earlier become
    /// unusable.
    /// @return false for a null text, which changes nothing, and for a text that is no XML, which leaves a
    ///         document without elements
    virtual bool parse(const char* text);

    /// The first document-level element of exactly that name, a null handle if there is none.
    XmlNode firstNode(const char* name);

    /// The text of the first document-level element: one element a line, indented by tabs. Empty for a
    /// document without elements.
    std::string serialize() const;
    /// Appends the same text.
    void print(common2::TextBuffer& out) const;

private:
    friend class XmlNode;

    std::unique_ptr<rapidxml::xml_document<char>> document;
    std::vector<char> buffer; ///< text of the last parse; names and values of a parsed document point into it
};
