/// The dataplane notification: what the user must see or do about flows that the backend holds. Each carries
/// the whole current set. Fields bear the names of their JSON keys; texts are UTF-8. Equality compares all
/// fields in order, lists element by element in list order.
#pragma once

#include "common/api/EnumerationWords.h"
#include "common/api/QuillTimePoint.h"

#include <cstdint>
#include <string>
#include <vector>

enum class DataplaneAlertCategory : std::uint32_t { Unknown, PostureError, PolicyError, ConnectivityError };

template <>
inline constexpr EnumerationWordTable<DataplaneAlertCategory, 4> enumerationWords<DataplaneAlertCategory>{{
    {DataplaneAlertCategory::Unknown, "unknown", "Unknown"},
    {DataplaneAlertCategory::PostureError, "posture_error", "PostureError"},
    {DataplaneAlertCategory::PolicyError, "policy_error", "PolicyError"},
    {DataplaneAlertCategory::ConnectivityError, "connectivity_error", "ConnectivityError"},
}};
static_assert(coversEnumeration(DataplaneAlertCategory::ConnectivityError));

enum class DataplaneProto : std::uint32_t { Unknown, Tcp, Udp, Icmp };

template <>
inline constexpr EnumerationWordTable<DataplaneProto, 4> enumerationWords<DataplaneProto>{{
    {DataplaneProto::Unknown, "unknown", "Unknown"},
    {DataplaneProto::Tcp, "tcp", "Tcp"},
    {DataplaneProto::Udp, "udp", "Udp"},
    {DataplaneProto::Icmp, "icmp", "Icmp"},
}};
static_assert(coversEnumeration(DataplaneProto::Icmp));

/// Where a flow was bound for.
struct DataplaneDestination_t {
    std::string host;
    std::uint16_t port = 0; ///< the low 16 bits of the document's number
    DataplaneProto proto{};
    QuillTimePoint timestamp = 0;

    bool operator==(const DataplaneDestination_t&) const = default;
};

/// Something the user should know. An empty text leaves the choice of words to the plugin.
struct DataplaneAlert_t {
    DataplaneAlertCategory category{};
    std::uint32_t code = 0;
    QuillTimePoint timestamp = 0;
    std::string title;
    std::string short_message;
    std::string long_message;
    std::string tile_message;
    std::string toast_message;
    std::string url;
    std::string url_label;
    std::vector<DataplaneDestination_t> destinations;

    bool operator==(const DataplaneAlert_t&) const = default;
};

/// Asks that the user authenticate in a browser before a destination opens.
struct DataplaneAuthRequest_t {
    QuillTimePoint timestamp = 0;
    std::string context_id;
    std::string start_url;
    std::string end_url;
    std::string cookie_name;
    DataplaneDestination_t destination;

    bool operator==(const DataplaneAuthRequest_t&) const = default;
};

struct DataplaneNotification_t {
    std::string version;
    std::vector<DataplaneAlert_t> dataplane_alerts;
    std::vector<DataplaneAuthRequest_t> dataplane_auth_requests;

    bool operator==(const DataplaneNotification_t&) const = default;
};
