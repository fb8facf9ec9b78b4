#include "presentation-plugin/machine-description/MachineDescription.h"

#include "common/state_machine/SmlDescription.h"
#include "presentation-plugin/PresentationPluginSm.h"

#include <boost/json/serialize.hpp>
#include <boost/json/string.hpp>

#include <algorithm>
#include <cctype>
#include <utility>

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

std::string regionText(const DescribedRegion& region) {
    const std::string indent = "          ";
    return "{\n" + indent + "\"name\": " + quoted(region.name) + ",\n" + indent +
           "\"initial\": " + quoted(region.table.initial) + ",\n" + indent +
           "\"states\": " + arrayText(region.table.states, indent, quoted) + ",\n" + indent +
           "\"rows\": " + arrayText(region.table.rows, indent, rowText) + "\n        }";
}

std::string machineText(const DescribedMachine& machine) {
    const std::string indent = "      ";
    return "{\n" + indent + "\"name\": " + quoted(machine.name) + ",\n" + indent +
           "\"regions\": " + arrayText(machine.regions, indent, regionText) + "\n    }";
}

template <class Definition>
DescribedMachine describedMachine() {
    DescribedMachine machine{smlDescription::Words<Definition>::text(), {}};
    for (Region& region : smlDescription::describe<Definition>()) {
        std::string name = regionName(region, machine.name);
        machine.regions.push_back({std::move(name), std::move(region)});
    }
    return machine;
}

} // namespace

std::vector<DescribedMachine> describedMachines() {
    return {describedMachine<PresentationPlugin_s>(), describedMachine<Started_s>()};
}

std::string machineDescription() {
    return "{\n  \"machines\": " + arrayText(describedMachines(), "  ", machineText) + "\n}\n";
}
