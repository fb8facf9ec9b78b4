#include "tests/support/XmlTree.h"

#include <string_view>

namespace test {

std::string maskTimestamps(const std::string& xml) {
    constexpr std::string_view opening = " timestamp=\"";
    std::string masked;
    std::size_t copied = 0;
    for (std::size_t found = 0; (found = xml.find(opening, copied)) != std::string::npos;) {
        const std::size_t value = found + opening.size();
        const std::size_t end = xml.find('"', value);
        if (end == std::string::npos) {
            break;
        }
        masked.append(xml, copied, value - copied).append("*");
        copied = end;
    }
    return masked.append(xml, copied, std::string::npos);
}

} // namespace test
