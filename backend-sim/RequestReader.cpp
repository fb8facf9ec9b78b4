#include "backend-sim/RequestReader.h"

#include <boost/json/basic_parser_impl.hpp>

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

namespace sim {
namespace {

namespace json = boost::json;

using Keys = std::span<const std::string_view>;

Keys keysOf(Operation operation) noexcept {
    static constexpr std::string_view initiateEnrollment[] = {"version", "enrollment_choice_id",
                                                              "enrollment_context"};
    static constexpr std::string_view existingEnrollment[] = {"version", "enrollment_id",
                                                              "enrollment_context"};
    static constexpr std::string_view enrollmentAuthReply[] = {"version", "enrollment_id",
                                                               "enrollment_cookie"};
    static constexpr std::string_view enrollmentId[] = {"version", "enrollment_id"};
    static constexpr std::string_view versionOnly[] = {"version"};
    static constexpr std::string_view dataplaneAuthReply[] = {"version", "context_id",
                                                              "authorization_cookie"};
    switch (operation) {
    case Operation::InitiateEnrollment:
        return initiateEnrollment;
    case Operation::InitiateReEnrollment:
    case Operation::InitiateUnenrollment:
        return existingEnrollment;
    case Operation::EnrollmentAuthReply:
        return enrollmentAuthReply;
    case Operation::CancelEnrollment:
    case Operation::PerformConfigSync:
        return enrollmentId;
    case Operation::TriggerPostureReports:
        return versionOnly;
    case Operation::DataplaneAuthReply:
        return dataplaneAuthReply;
    case Operation::GetQuillApiFactory:
    case Operation::CreateApi:
    case Operation::Start:
    case Operation::Stop:
        break;
    }
    return {};
}

/// Takes a flat object of texts and breaks off at anything else. Unlike a document tree it sees a key that
/// comes twice.
class FlatObjectHandler {
public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    using Error = json::error_code;
    using Text = json::string_view;

    explicit FlatObjectHandler(Keys expected)
        : keys(expected) {}

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }

    bool on_object_begin(Error& error) { return std::exchange(opened, true) ? refuse(error) : true; }
    bool on_object_end(std::size_t, Error&) { return true; }

    bool on_key_part(Text part, std::size_t, Error&) { return append(key, part); }
    bool on_key(Text part, std::size_t, Error& error) {
        append(key, part);
        return std::find(keys.begin(), keys.end(), key) != keys.end() ? true : refuse(error);
    }

    bool on_string_part(Text part, std::size_t, Error&) { return append(value, part); }
    bool on_string(Text part, std::size_t, Error& error) {
        append(value, part);
        const bool isFirst = request.emplace(std::exchange(key, {}), std::exchange(value, {})).second;
        return opened && isFirst ? true : refuse(error);
    }

    bool on_array_begin(Error& error) { return refuse(error); }
    bool on_array_end(std::size_t, Error&) { return true; }
    bool on_number_part(Text, Error&) { return true; }
    bool on_int64(std::int64_t, Text, Error& error) { return refuse(error); }
    bool on_uint64(std::uint64_t, Text, Error& error) { return refuse(error); }
    bool on_double(double, Text, Error& error) { return refuse(error); }
    bool on_bool(bool, Error& error) { return refuse(error); }
    bool on_null(Error& error) { return refuse(error); }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }

    Request request;

private:
    static bool refuse(Error& error) {
        error = json::error::syntax;
        return false;
    }
    static bool append(std::string& text, Text part) {
        text.append(part.data(), part.size());
        return true;
    }

    Keys keys;
    std::string key;
    std::string value;
    bool opened = false;
};

} // namespace

std::optional<Request> readRequest(Operation operation, std::string_view text) {
    const Keys keys = keysOf(operation);
    json::basic_parser<FlatObjectHandler> parser(json::parse_options{}, keys);
    json::error_code error;
    const std::size_t parsed = parser.write_some(false, text.data(), text.size(), error);
    if (error || parsed != text.size() || keys.empty()) {
        return std::nullopt;
    }
    Request request = std::move(parser.handler().request);
    if (request.size() != keys.size()) {
        return std::nullopt;
    }
    return request;
}

} // namespace sim
