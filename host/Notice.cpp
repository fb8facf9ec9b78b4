#include "host/Notice.h"

#include "host/HostError.h"
#include "xml/XmlDepth.h"

#include <rapidxml/rapidxml.hpp>

#include <algorithm>

namespace host {
namespace {

using Node = rapidxml::xml_node<char>;

constexpr std::string_view rootName = "vtguiNotice";

std::string nameOf(const rapidxml::xml_base<char>& named) { return {named.name(), named.name_size()}; }
std::string valueOf(const rapidxml::xml_base<char>& named) { return {named.value(), named.value_size()}; }

NoticeElement copyOf(const Node& node) {
    NoticeElement element{nameOf(node), valueOf(node), {}, {}};
    for (auto* attribute = node.first_attribute(); attribute; attribute = attribute->next_attribute()) {
        element.attributes.emplace_back(nameOf(*attribute), valueOf(*attribute));
    }
    for (auto* child = node.first_node(); child; child = child->next_sibling()) {
        if (child->type() == rapidxml::node_element) {
            element.children.push_back(copyOf(*child));
        }
    }
    return element;
}

} // namespace

std::string_view NoticeElement::attribute(std::string_view key) const {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const auto& attribute) { return attribute.first == key; });
    return found == attributes.end() ? std::string_view() : found->second;
}

bool NoticeElement::has(std::string_view key) const {
    return std::any_of(attributes.begin(), attributes.end(),
                       [&](const auto& attribute) { return attribute.first == key; });
}

const NoticeElement* NoticeElement::child(std::string_view key) const {
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const NoticeElement& element) { return element.name == key; });
    return found == children.end() ? nullptr : &*found;
}

NoticeElement parseNotice(std::string_view xml) {
    std::string text(xml); // parsed in place
    if (nestsDeeperThan(text.c_str(), deepestXmlNesting)) {
        throw HostError("not XML: elements nest too deep");
    }
    rapidxml::xml_document<char> document;
    try {
        document.parse<rapidxml::parse_validate_closing_tags>(text.data());
    } catch (const rapidxml::parse_error& fault) {
        throw HostError(std::string("not XML: ") + fault.what());
    }
    const Node* root = document.first_node();
    if (root == nullptr || nameOf(*root) != rootName) {
        throw HostError("the root element is not \"vtguiNotice\"");
    }
    if (root->next_sibling() != nullptr) {
        throw HostError("there is more than one root element");
    }
    return copyOf(*root);
}

} // namespace host
