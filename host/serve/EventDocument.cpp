#include "host/serve/EventDocument.h"

#include "host/Text.h"

namespace host::serve {
namespace {

std::string documentOf(std::string_view eventId, const std::string& content) {
    return "<vtguiEvent id=\"" + xmlEscaped(eventId) + "\">" + content + "</vtguiEvent>";
}

} // namespace

std::string eventDocument(std::string_view eventId) { return documentOf(eventId, {}); }

std::string browserReport(const ScreenControl& browser, const std::string& event,
                          std::initializer_list<ReportedAttribute> reported) {
    const std::string_view asked = browser.attribute(event + "ID");
    std::string control = "<webbrowser id=\"" + xmlEscaped(asked.empty() ? browser.id() : asked) + "\"";
    for (const ReportedAttribute& attribute : reported) {
        control += " " + std::string(attribute.name) + "=\"" + xmlEscaped(attribute.value) + "\"";
    }
    return documentOf(browser.attribute(event), control + "/>");
}

} // namespace host::serve
