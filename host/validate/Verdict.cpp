#include "host/validate/Verdict.h"

#include "host/Text.h"

#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

namespace host::validate {

namespace json = boost::json;

namespace {

constexpr std::string_view mark = "wren-host-verdict ";

/// Reasons quote what a module sent, which may be no UTF-8.
std::string sentenceOf(const std::string& reason) {
    if (isUtf8(reason)) {
        return reason;
    }
    return std::string("bytes that are not UTF-8, in Base64: ").append(encodeBase64(reason));
}

} // namespace

std::string verdictLine(const Verdict& verdict) {
    return std::string(mark).append(json::serialize(json::object{
        {"passed", verdict.outcome == Outcome::Passed}, {"reason", sentenceOf(verdict.reason)}}));
}

std::optional<Verdict> verdictIn(std::string_view output) {
    const std::size_t begin = output.rfind(mark);
    if (begin == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view text = output.substr(begin + mark.size());
    boost::system::error_code error;
    const json::value line = json::parse(json::string_view(text.substr(0, text.find('\n'))), error);
    if (error || !line.is_object()) {
        return std::nullopt;
    }
    const json::object& object = line.get_object();
    const json::value* passed = object.if_contains("passed");
    const json::value* reason = object.if_contains("reason");
    if (passed == nullptr || !passed->is_bool() || reason == nullptr || !reason->is_string()) {
        return std::nullopt;
    }
    return Verdict{passed->get_bool() ? Outcome::Passed : Outcome::Failed, std::string(reason->get_string())};
}

} // namespace host::validate
