// Prints the plugin's machine, as host/app/machine.json holds it.

#include "presentation-plugin/machine-description/MachineDescription.h"

#include <iostream>

int main() {
    std::cout << machineDescription() << std::flush;
    return std::cout ? 0 : 1;
}
