#include "host/DuplicateKeys.h"

#include <boost/json/basic_parser_impl.hpp>

#include <cstdint>
#include <set>
#include <utility>

namespace host {
namespace {

namespace json = boost::json;

/// Breaks off at the first key of the outermost object that it has seen before.
class KeyWatcher {
public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    using Error = json::error_code;
    using Text = json::string_view;

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_object_begin(Error&) { return ++depth > 0; }
    bool on_object_end(std::size_t, Error&) { return depth-- > 0; }
    bool on_array_begin(Error&) { return ++depth > 0; }
    bool on_array_end(std::size_t, Error&) { return depth-- > 0; }

    bool on_key_part(Text part, std::size_t, Error&) {
        key.append(part.data(), part.size());
        return true;
    }
    bool on_key(Text part, std::size_t, Error& error) {
        key.append(part.data(), part.size());
        std::string complete = std::exchange(key, {});
        if (depth == 1 && !seen.insert(complete).second) {
            duplicate = std::move(complete);
            error = json::error::syntax;
            return false;
        }
        return true;
    }

    bool on_string_part(Text, std::size_t, Error&) { return true; }
    bool on_string(Text, std::size_t, Error&) { return true; }
    bool on_number_part(Text, Error&) { return true; }
    bool on_int64(std::int64_t, Text, Error&) { return true; }
    bool on_uint64(std::uint64_t, Text, Error&) { return true; }
    bool on_double(double, Text, Error&) { return true; }
    bool on_bool(bool, Error&) { return true; }
    bool on_null(Error&) { return true; }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }

    std::optional<std::string> duplicate;

private:
    int depth = 0;
    std::string key;
    std::set<std::string> seen;
};

} // namespace

std::optional<std::string> duplicateKey(std::string_view text) {
    json::basic_parser<KeyWatcher> parser{json::parse_options{}};
    json::error_code error;
    parser.write_some(false, text.data(), text.size(), error);
    return std::move(parser.handler().duplicate);
}

} // namespace host
