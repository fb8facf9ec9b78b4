#include "backend-sim/DuplicateKey.h"

#include <boost/json/basic_parser_impl.hpp>

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

namespace sim {
namespace {

namespace json = boost::json;

/// Remembers the keys of the objects that are open, and breaks off at one that comes twice.
class KeyHandler {
public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    using Error = json::error_code;
    using Text = json::string_view;

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_object_begin(Error&) { return open(); }
    bool on_object_end(std::size_t, Error&) { return close(); }
    bool on_array_begin(Error&) { return open(); }
    bool on_array_end(std::size_t, Error&) { return close(); }

    bool on_key_part(Text part, std::size_t, Error&) {
        key.append(part.data(), part.size());
        return true;
    }
    bool on_key(Text part, std::size_t, Error& error) {
        key.append(part.data(), part.size());
        Level& level = levels.back();
        level.place = key;
        key.clear();
        if (!level.keys.insert(level.place).second) {
            duplicate = place();
            error = json::error::syntax;
        }
        return !duplicate;
    }

    bool on_string_part(Text, std::size_t, Error&) { return true; }
    bool on_string(Text, std::size_t, Error&) { return countElement(); }
    bool on_number_part(Text, Error&) { return true; }
    bool on_int64(std::int64_t, Text, Error&) { return countElement(); }
    bool on_uint64(std::uint64_t, Text, Error&) { return countElement(); }
    bool on_double(double, Text, Error&) { return countElement(); }
    bool on_bool(bool, Error&) { return countElement(); }
    bool on_null(Error&) { return countElement(); }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }

    std::optional<std::string> duplicate;

private:
    /// An object or an array that is open.
    struct Level {
        std::set<std::string> keys;
        std::string place;     ///< the key that was read last
        std::size_t index = 0; ///< of the next element, where there are no keys
    };

    bool open() {
        levels.emplace_back();
        return true;
    }
    bool close() {
        levels.pop_back();
        return countElement();
    }
    bool countElement() {
        if (!levels.empty()) {
            ++levels.back().index;
        }
        return true;
    }
    std::string place() const {
        std::string pointer;
        for (const Level& level : levels) {
            pointer += "/" + (level.keys.empty() ? std::to_string(level.index) : level.place);
        }
        return pointer;
    }

    std::vector<Level> levels;
    std::string key;
};

} // namespace

std::optional<std::string> findDuplicateKey(std::string_view text) {
    json::basic_parser<KeyHandler> parser{json::parse_options{}};
    json::error_code error;
    parser.write_some(false, text.data(), text.size(), error);
    return std::move(parser.handler().duplicate);
}

} // namespace sim
