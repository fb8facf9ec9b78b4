#include "host/SessionFormat.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace host {
namespace {

using enum KeyKind;

constexpr bool optional = false;
constexpr std::uint64_t most32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t mostWord = std::numeric_limits<std::uintptr_t>::max();

constexpr std::string_view recordKinds[] = {"cpp", "c"};
constexpr std::string_view getters[] = {"identity", "label", "display_version"};
constexpr std::string_view inertOperations[] = {
    "Encrypt",
    "Decrypt",
    "GetPendingApprovalData",
    "ApprovalEventNotification",
    "IsUIEnabled",
    "IsMultiUserModeEnabled",
};
constexpr std::string_view documents[] = {
    "StatusNotification",    "EnrollmentStatusNotification",
    "EnrollmentAuthRequest", "UnenrollmentStatusNotification",
    "DataplaneNotification",
};
constexpr std::string_view backendOperations[] = {
    "GetQuillApiFactory",
    "CreateApi",
    "Start",
    "InitiateEnrollment",
    "InitiateReEnrollment",
    "EnrollmentAuthReply",
    "CancelEnrollment",
    "InitiateUnenrollment",
    "PerformConfigSync",
    "TriggerPostureReports",
    "DataplaneAuthReply",
    "Stop",
};

constexpr KeyRule nullHandle{"null_handle", Flag, optional};

constexpr KeyRule sessionKeys[] = {{"format", Count, true, {}, 1, 1}, {"time_zone", Text, optional}};
constexpr KeyRule createKeys[] = {{"name", NullableText}, {"kind", Word, optional, recordKinds}};
constexpr KeyRule supportsKeys[] = {{"name", NullableText}, {"version", Number}, nullHandle};
constexpr KeyRule registerKeys[] = {
    {"arguments", NullableText},
    {"callbacks", NullableName},
    {"translator", Flag},
    {"handle", Count, true, {}, 0, mostWord},
    nullHandle,
};
constexpr KeyRule plainCallKeys[] = {nullHandle};
constexpr KeyRule stopKeys[] = {{"reason", Count, optional, {}, 0, most32}, nullHandle};
constexpr KeyRule getKeys[] = {
    {"what", Word, true, getters}, {"buffer", Flag}, {"size", Count, true, {}, 0, most32}, nullHandle};
constexpr KeyRule inertKeys[] = {
    {"operation", Word, true, inertOperations}, {"output", Flag, optional}, nullHandle};
constexpr KeyRule eventKeys[] = {{"xml", Text}, nullHandle};
constexpr KeyRule deliverKeys[] = {{"document", Word, true, documents}, {"json", Text}};
constexpr KeyRule resultKeys[] = {
    {"operation", Word, true, backendOperations},
    {"result", Count, true, {}, 0, most32},
    {"times", Count, optional, {}, 0, most32},
};
constexpr KeyRule nullApiKeys[] = {{"null_api", Flag}};
constexpr KeyRule factoryExpiredKeys[] = {{"factory_expired", Flag}};
constexpr KeyRule resetKeys[] = {{"reset", True}};

// Lines of one word stand together.
constexpr LineRule rules[] = {
    {"session", InputKind::Session, sessionKeys},
    {"interfaces", InputKind::Interfaces, {}},
    {"create", InputKind::Create, createKeys},
    {"supports", InputKind::Supports, supportsKeys},
    {"register", InputKind::Register, registerKeys},
    {"start", InputKind::Start, plainCallKeys},
    {"stop", InputKind::Stop, stopKeys},
    {"unregister", InputKind::Unregister, plainCallKeys},
    {"dispose", InputKind::Dispose, {}},
    {"get", InputKind::Get, getKeys},
    {"inert", InputKind::Inert, inertKeys},
    {"event", InputKind::Event, eventKeys},
    {"deliver", InputKind::Deliver, deliverKeys},
    {"backend", InputKind::BackendResult, resultKeys},
    {"backend", InputKind::BackendNullApi, nullApiKeys},
    {"backend", InputKind::BackendFactoryExpired, factoryExpiredKeys},
    {"backend", InputKind::BackendReset, resetKeys},
};

} // namespace

std::span<const LineRule> lineRules(std::string_view word) {
    const auto isOfWord = [&](const LineRule& rule) { return rule.word == word; };
    const auto first = std::find_if(std::begin(rules), std::end(rules), isOfWord);
    const auto last = std::find_if_not(first, std::end(rules), isOfWord);
    return {first, last};
}

} // namespace host
