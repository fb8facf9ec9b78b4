#include "presentation-plugin/machine-description/MachineDescription.h"

#include "common/state_machine/SmlDescription.h"
#include "presentation-plugin/PresentationPluginSm.h"

#include <boost/json/serialize.hpp>
#include <boost/json/string.hpp>

#include <algorithm>
#include <cctype>

namespace {

using smlDescription::Region;
using smlDescription::Row;

std::string quoted(const std::string& text) { return boost::json::serialize(boost::json::string(text)); }

/// What the names of a region's states have in common, in the words of a key: "DataplaneAuthIdle_s" and
/// "DataplaneAuthenticating_s" are of "dataplane_auth".
std::string regionName(const Region& region, const std::string& machine) {
    std::string common = region.states.front();
    for (const std::string& state : region.states) {
        const auto end = std::ranges::mismatch(common, state).in1;
        common.erase(end, common.end());
    }
    if (common.empty()) {
        common = machine.substr(0, machine.rfind("_s"));
    }
    std::string name;
    for (const char character : common) {
        const bool isCapital = std::isupper(static_cast<unsigned char>(character)) != 0;
        name += isCapital && !name.empty() ? "_" : "";
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return name;
}

std::string rowText(const Row& row) {
    return "{\"from\": " + quoted(row.from) + ", \"event\": " + quoted(row.event) +
           ", \"guard\": " + quoted(row.guard) + ", \"action\": " + quoted(row.action) +
           ", \"to\": " + quoted(row.to) + "}";
}

/// The pieces, one a line, in an array.
template <class Pieces, class ToText>
std::string arrayText(const Pieces& pieces, const std::string& indent, ToText toText) {
    std::string text = "[";
    for (const auto& piece : pieces) {
        text += (text.size() > 1 ? ",\n" : "\n") + indent + "  " + toText(piece);
    }
    return text + "\n" + indent + "]";
}

std::string regionText(const Region& region, const std::string& machine) {
    const std::string indent = "          ";
    return "{\n" + indent + "\"name\": " + quoted(regionName(region, machine)) + ",\n" + indent +
           "\"initial\": " + quoted(region.initial) + ",\n" + indent +
           "\"states\": " + arrayText(region.states, indent, quoted) + ",\n" + indent +
           "\"rows\": " + arrayText(region.rows, indent, rowText) + "\n        }";
}

template <class Definition>
std::string machineText() {
    const std::string name = smlDescription::Words<Definition>::text();
    const std::string indent = "      ";
    return "    {\n" + indent + "\"name\": " + quoted(name) + ",\n" + indent + "\"regions\": " +
           arrayText(smlDescription::describe<Definition>(), indent,
                     [&](const Region& region) { return regionText(region, name); }) +
           "\n    }";
}

} // namespace

std::string machineDescription() {
    return "{\n  \"machines\": [\n" + machineText<PresentationPlugin_s>() + ",\n" + machineText<Started_s>() +
           "\n  ]\n}\n";
}
