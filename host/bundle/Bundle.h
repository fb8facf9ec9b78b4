/// What a diagnostic bundle holds.
#pragma once

#include "host/bundle/ModuleStory.h"
#include "host/bundle/SystemFacts.h"
#include "host/bundle/ZipArchive.h"

#include <boost/json/object.hpp>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace host::bundle {

/// All that was found out, with its secrets.
struct Findings {
    std::chrono::system_clock::time_point time; ///< of the collection
    SystemFacts system;
    boost::json::object module;        ///< what it is, or the "problem" that kept it from telling
    ModuleStory story;                 ///< of its plugin
    boost::json::object configuration; ///< of its log: "path", and "text" or "problem"
    std::string systemLog;             ///< lines that the system has kept; empty: none were given
};

struct Bundle {
    std::vector<ArchiveFile> files;     ///< without secrets, in the order of reading
    std::vector<std::string> summaries; ///< of each file: a few words
    std::string replaced;               ///< what was taken out of the files, in words
};

/// Makes the bundle's files of the findings, and takes out what is nobody else's business: cookies, values of
/// browsers, queries of URLs, passwords, tokens, names of users and of the machine, addresses of e-mail,
/// certificates and fingerprints.
Bundle makeBundle(Findings findings);

} // namespace host::bundle
