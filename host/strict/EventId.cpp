#include "host/strict/EventId.h"

#include "xml/XmlDepth.h"

#include <rapidxml/rapidxml.hpp>

namespace host {

std::string eventIdOf(std::string_view xml) {
    std::string text(xml); // parsed in place
    if (nestsDeeperThan(text.c_str(), deepestXmlNesting)) {
        return {};
    }
    rapidxml::xml_document<char> document;
    try {
        document.parse<0>(text.data());
    } catch (const rapidxml::parse_error&) {
        return {};
    }
    const auto* root = document.first_node("vtguiEvent");
    const auto* id = root != nullptr ? root->first_attribute("id") : nullptr;
    return id != nullptr ? std::string(id->value(), id->value_size()) : std::string();
}

} // namespace host
