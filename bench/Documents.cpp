#include "bench/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

namespace bench {
namespace {

namespace json = boost::json;

constexpr std::int64_t now = 1'700'000'000;

json::array proxies(std::size_t count) {
    json::array list;
    for (std::size_t number = 0; number < count; ++number) {
        list.push_back({{"label", "Proxy " + std::to_string(number) + " (Frankfurt)"},
                        {"status", number % 3 == 2 ? "standby" : "active"}});
    }
    return list;
}

json::array fingerprints(std::size_t count) {
    json::array list;
    for (std::size_t number = 0; number < count; ++number) {
        list.push_back({{"label", "Office network " + std::to_string(number)},
                        {"status", number % 2 == 0 ? "Matched" : "Unmatched"}});
    }
    return list;
}

json::object certificate() {
    return {{"certificate_expiration_time", now + 30'000'000},
            {"last_renewal_attempt_time", now - 2'000'000},
            {"failed_renewal_attempt_cnt", 0},
            {"certificate_state", "ok"},
            {"certificate_renewal_status", "ok"},
            {"certificate_urns",
             {{"org_id", "urn:wren:org:3f0f3a52-3a5b-4b0f-9a41-0d7c2a1c9a01"},
              {"user_id", "urn:wren:user:7c1f6f0e-6f3c-4c53-8d1f-51d3c0b7f0a2"},
              {"plv_id", "urn:wren:plv:9d2f4a7b-02a6-4f5e-8b52-2e5f7c9d4b33"},
              {"quill_device_id", "urn:wren:device:b1a7c3d8-5d8e-4c9e-a6f1-8e0a9c3b7d44"},
              {"user_name", "robin.example@corp.example"}}}};
}

json::object dataplane(std::int64_t flows, std::size_t proxyCount) {
    return {{"flow_cnt_udp", 10'101 + flows},
            {"flow_cnt_tcp", 20'102 + flows},
            {"active_flow_cnt_udp", 3},
            {"active_flow_cnt_tcp", 14 + flows},
            {"allowed_flow_cnt_udp", 9'995 + flows},
            {"allowed_flow_cnt_tcp", 19'996 + flows},
            {"blocked_flow_cnt_udp", 106},
            {"blocked_flow_cnt_tcp", 106},
            {"authenticated_flow_cnt_udp", 9},
            {"authenticated_flow_cnt_tcp", 10},
            {"server_connectivity", "ok"},
            {"proxy_configs", proxies(proxyCount)}};
}

json::object enrollment(std::int64_t change, std::size_t proxyCount, std::size_t fingerprintCount) {
    return {{"state", "active"},
            {"substate", "none"},
            {"id", "b7e4c1f2-9c3d-4f3a-8a55-6d0f2b1c7e90"},
            {"type", "user"},
            {"label", "Example Corporation, Frankfurt"},
            {"enrollment_time", now - 10'000'000},
            {"unenroll_allowed", true},
            {"reenroll_allowed", true},
            {"config_sync_status",
             {{"config_sync_interval_min", 30},
              {"last_config_sync_success", now - 1'000 + 60 * change},
              {"fail_cnt_since_last_sync_success", 0},
              {"server_connectivity", "ok"}}},
            {"certificate_status", certificate()},
            {"dataplane_status", dataplane(change, proxyCount)},
            {"network_status", {{"fingerprints", fingerprints(fingerprintCount)}}}};
}

json::object status(std::int64_t change, std::size_t proxyCount, std::size_t fingerprintCount) {
    return {{"version", "1"},
            {"state", "active"},
            {"substate", ""},
            {"interceptor_connectivity", "ok"},
            {"posture_connectivity", "ok"},
            {"hw_key_store_availability", "ok"},
            {"service_status", "ok"},
            {"enrollment_choices", json::array()},
            {"enrollments", json::array{enrollment(change, proxyCount, fingerprintCount)}}};
}

// Either half of a row leads libstdc++'s `std::hash` from the state before it to the same state behind it.
// clang-format off
constexpr std::string_view piecesOfOneHash[][2]{
    {"nieweymieuvbvnmm", "jgczvkarTMIvZyZ7"},
    {"gtzherozjfclpnai", "fykofyhkVyS7xnSV"},
    {"ginbclffvkeaamhw", "ssjxzthggIVtJNe6"},
    {"sadjboxdtjcmiheh", "jctykpxi42FofJ8i"},
    {"nmhbteqacjkntrjl", "nhtpwmrrn1ol1YQR"},
    {"kmrgdmfrkfngbaoq", "jdvxwromN2Lp5j7C"},
    {"zonyiolrsyghgxjm", "ntfvbpqytPPCnBlt"},
    {"ygovfrsyautuhipt", "flfcpfzmLBxfHpqI"},
    {"qoscnrrleqluamgt", "egffcthrJCBlrV86"},
    {"bzzaceugjvdwqatu", "zssrivzwKTHPbFXe"},
    {"vvfhfrwkmcbdzokr", "yyyaofyr2Fa41HMy"},
    {"jmdzsjxmgqqtelqv", "motkkzmgnFEflNhm"},
    {"kffcscwhqqpnwqzs", "ifbttvzqHDnWJmXc"},
    {"zqwybpenwzcouucy", "iiwactrvsQaDxn6y"},
};
// clang-format on

/// One of 16,384 titles that all have the same `std::hash`.
std::string titleOfOneHash(std::size_t number) {
    std::string title;
    for (const auto& halves : piecesOfOneHash) {
        title += halves[number % 2];
        number /= 2;
    }
    return title;
}

json::object alert(std::size_t number, bool changed) {
    const std::string name = std::to_string(number);
    return {{"category", number % 2 == 0 ? "policy_error" : "connectivity_error"},
            {"code", number},
            {"timestamp", now + static_cast<std::int64_t>(number)},
            {"title", "Access to resource " + name + " was blocked"},
            {"short_message", "A policy of your organisation blocks resource " + name + "."},
            {"long_message", "A policy of your organisation blocks resource " + name +
                                 (changed ? ". Try again later or contact your IT help desk."
                                          : ". Contact your IT help desk if you need access to it.")},
            {"tile_message", "Resource " + name + " is blocked"},
            {"toast_message", "Resource " + name + " is blocked by policy"},
            {"url", "https://help.corp.example/blocked/" + name},
            {"url_label", "Why is this blocked?"},
            {"destinations", json::array{{{"host", "host" + name + ".corp.example"},
                                          {"port", 443},
                                          {"proto", "tcp"},
                                          {"timestamp", now}}}}};
}

std::string dataplaneOf(json::array alerts) {
    return json::serialize(json::object{{"version", "1"},
                                        {"dataplane_alerts", std::move(alerts)},
                                        {"dataplane_auth_requests", json::array()}});
}

} // namespace

std::string statusDocument(bool changed, std::size_t proxyCount, std::size_t fingerprintCount) {
    return json::serialize(status(changed ? 1 : 0, proxyCount, fingerprintCount));
}

std::string statusDocumentWithDigits(std::size_t& digits) {
    constexpr std::string_view placeholder = "0000000000";
    json::object document = status(0, 4, 3);
    document["sent"] = placeholder;
    const std::string text = json::serialize(document);
    digits = text.find(placeholder);
    return text;
}

std::string alertsOfOneHash(std::size_t alerts, bool changed) {
    json::array list;
    for (std::size_t number = 0; number < alerts; ++number) {
        json::object one = alert(0, changed);
        one["title"] = titleOfOneHash(number);
        list.push_back(std::move(one));
    }
    return dataplaneOf(std::move(list));
}

std::string dataplaneDocument(std::size_t alerts, Change change) {
    json::array list;
    for (std::size_t number = 0; number < alerts; ++number) {
        const bool changed =
            change == Change::EveryAlert || (change == Change::OneAlert && number == alerts / 2);
        list.push_back(alert(number, changed));
    }
    if (change == Change::Order) {
        std::reverse(list.begin(), list.end());
    }
    return dataplaneOf(std::move(list));
}

} // namespace bench
