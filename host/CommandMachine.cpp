#include "host/Commands.h"
#include "host/HostError.h"
#include "presentation-plugin/machine-description/MachineDrawing.h"

#include <iostream>

namespace host {
namespace {

std::string drawn(const MachineOptions& options) {
    switch (options.notation) {
    case MachineNotation::Dot:
        return machineAsDot(options.region);
    case MachineNotation::Mermaid:
        return machineAsMermaid(options.region);
    case MachineNotation::Table:
        break;
    }
    return machineAsTable(options.region);
}

} // namespace

void drawMachine(const MachineOptions& options) {
    std::cout << drawn(options);
    if (!std::cout.flush()) {
        throw HostError("cannot write the output");
    }
}

} // namespace host
