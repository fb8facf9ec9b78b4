/// The rows of the statistics details as data: for the files that write the statistics.
#pragma once

#include "common/api/StatusNotification.h"
#include "common2/util/LocalTimeCache.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

/// What statistics say where nothing is known.
inline constexpr std::string_view statUnknown = "Unknown";

/// The ids of the two lists.
inline constexpr const char* statOverviewId = "overview_stat_outlinelistbox";
inline constexpr const char* statDetailsId = "stat_outlinelistbox";

/// What the rows of the details are read from.
struct StatSource {
    const Enrollment_t& enrollment; ///< the first, or one of defaults
    bool exists;                    ///< whether there is an enrollment
    common2::LocalTimeCache& times;
};

/// The first enrollment of a status, or one of defaults.
StatSource statSource(const StatusNotification_t& status, common2::LocalTimeCache& times);

/// One row of the details; `value` appends its text to an empty string.
struct StatRow {
    const char* id;
    const char* title;
    void (*value)(const StatSource& source, std::string& text);
};

struct StatGroup {
    const char* id;
    const char* title;
    std::span<const StatRow> rows;
};

/// All groups but the two that follow the lists of proxies and fingerprints.
extern const std::array<StatGroup, 5> statDetailGroups;

/// The two lists of a group each: one row an entry, whose id ends in the hash of the entry's name.
struct StatItemGroup {
    const char* id;
    const char* title;
    std::string_view rowIdPrefix;
};

inline constexpr StatItemGroup statProxies{"stat_group_proxy_configs_info",
                                           "Proxy Configurations:", "stat_proxy_config_item_"};
inline constexpr StatItemGroup statFingerprints{
    "stat_group_network_status_fingerprints_info",
    "Network Fingerprints:", "stat_network_status_fingerprint_item_"};

/// What a fingerprint's row says.
std::string_view fingerprintStatusText(FingerprintStatus status) noexcept;

/// What the overview says.
struct StatOverviewValues {
    std::string_view certificate = statUnknown;
    std::string_view configSync = statUnknown;
    std::string_view proxy = statUnknown;
    std::string_view interceptor = statUnknown;
};

StatOverviewValues statOverviewValues(const StatusNotification_t& status);

/// The overview's title with the state in parentheses behind it, its first letter in capitals; without a
/// state the plain title.
std::string statOverviewTitle(std::string_view state);
