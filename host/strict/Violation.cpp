#include "host/strict/Violation.h"

namespace host {

std::string lineOf(const Violation& violation) {
    std::string line = "rule broken: ";
    line += violation.name();
    line += ": ";
    line += violation.text;
    line += " (";
    line += violation.sentence();
    return line += ")";
}

} // namespace host
