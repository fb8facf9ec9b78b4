#include "common/api/QuillApiDefsUtil.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

namespace json = boost::json;

std::string initiateEnrollmentRequest(std::string_view version, std::string_view enrollment_choice_id,
                                      std::string_view enrollment_context) {
    return json::serialize(json::object{{"version", version},
                                        {"enrollment_choice_id", enrollment_choice_id},
                                        {"enrollment_context", enrollment_context}});
}

std::string enrollmentRequest(std::string_view version, std::string_view enrollment_id,
                              std::string_view enrollment_context) {
    return json::serialize(json::object{
        {"version", version}, {"enrollment_id", enrollment_id}, {"enrollment_context", enrollment_context}});
}

std::string enrollmentAuthReplyRequest(std::string_view version, std::string_view enrollment_id,
                                       std::string_view enrollment_cookie) {
    return json::serialize(json::object{
        {"version", version}, {"enrollment_id", enrollment_id}, {"enrollment_cookie", enrollment_cookie}});
}

std::string enrollmentIdRequest(std::string_view version, std::string_view enrollment_id) {
    return json::serialize(json::object{{"version", version}, {"enrollment_id", enrollment_id}});
}

std::string versionRequest(std::string_view version) {
    return json::serialize(json::object{{"version", version}});
}

std::string dataplaneAuthReplyRequest(std::string_view version, std::string_view context_id,
                                      std::string_view authorization_cookie) {
    return json::serialize(json::object{
        {"version", version}, {"context_id", context_id}, {"authorization_cookie", authorization_cookie}});
}
