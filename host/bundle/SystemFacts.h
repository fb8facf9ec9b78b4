/// What a bundle tells, and must not tell, of the machine and its user.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace host::bundle {

struct SystemFacts {
    std::string system;                             ///< its name and version
    std::vector<std::string> userNames;             ///< of who runs this program
    std::vector<std::string> homeFolders;           ///< of the same
    std::string hostName;                           ///< empty where the system does not tell
    std::map<std::string, std::string> environment; ///< all variables of this process
};

/// Asks the system. What it does not tell stays empty.
SystemFacts systemFacts();

} // namespace host::bundle
