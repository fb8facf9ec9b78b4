/// The service's documents that the works are fed with.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// Which of the alerts in a dataplane document differ from those of the first.
enum class Change { None, OneAlert, EveryAlert, Order };

/// An enrolled and healthy device.
/// @param changed with other flow counters and a later synchronisation than without
/// @param proxies,fingerprints entries in each list; 4 and 3 make a document of 2.3 kB
std::string statusDocument(bool changed, std::size_t proxies = 4, std::size_t fingerprints = 3);

/// The same document with a member that the module does not read, whose ten digits make it another text.
/// @param digits receives where they stand
std::string statusDocumentWithDigits(std::size_t& digits);

/// Alerts, each with all its texts and one destination; no authentication request.
std::string dataplaneDocument(std::size_t alerts, Change change = Change::None);

/// Alerts that differ in their titles only, whose `std::hash` is one and the same: what a hostile service
/// would send to a hash table.
/// @param alerts 16,384 at most
/// @param changed whether all of them differ from those without
std::string alertsOfOneHash(std::size_t alerts, bool changed);

} // namespace bench
