#include "xml/XmlDoc.h"

#include "xml/RapidXml.h"
#include "xml/XmlDepth.h"
#include "xml/XmlText.h"

#include <cstddef>
#include <cstring>
#include <iterator>

namespace {

/// The output iterator of the library's printer. The printer finds the functions behind it by its type and
/// uses them in place of its own, so that names and values are copied in blocks and not character by
/// character.
class PrintSink {
public:
    using iterator_category = std::output_iterator_tag;
    using value_type = void;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = void;

    explicit PrintSink(common2::TextBuffer& out)
        : text(&out) {}
    PrintSink& operator*() { return *this; }
    PrintSink& operator++() { return *this; }
    PrintSink& operator++(int) { return *this; }
    PrintSink& operator=(char character) {
        text->append(character);
        return *this;
    }

    friend PrintSink copy_chars(const char* begin, const char* end, PrintSink out) {
        out.text->append({begin, end});
        return out;
    }
    friend PrintSink copy_and_expand_chars(const char* begin, const char* end, char kept, PrintSink out) {
        appendEscaped(*out.text, {begin, end}, kept);
        return out;
    }

private:
    common2::TextBuffer* text;
};

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
    common2::TextBuffer text;
    print(text);
    return std::string(text.view());
}

void XmlDoc::print(common2::TextBuffer& out) const {
    const auto* element = document->first_node();
    while (element && element->type() != rapidxml::node_element) {
        element = element->next_sibling();
    }
    if (element) {
        rapidxml::print(PrintSink(out), *element);
    }
}
