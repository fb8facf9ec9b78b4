/// Reads of single JSON values, for the decoders: what is of the wrong kind, absent or unfit is an exception,
/// as the decoders' contract lists them.
#pragma once

#include "common/api/EnumerationWords.h"
#include "common/api/QuillTimePoint.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace json_fields {

/// @throws std::invalid_argument "not an object"
const boost::json::object& toObject(const boost::json::value& value);
/// @throws std::invalid_argument "array required"
const boost::json::array& toArray(const boost::json::value& value);
/// @throws std::invalid_argument "bool required"
bool toBool(const boost::json::value& value);

/// The whole text without a copy, NUL bytes included; lives as long as the value.
/// @throws std::invalid_argument "not a string"
std::string_view viewOf(const boost::json::value& value);
/// The text up to its first NUL byte.
/// @throws std::invalid_argument "not a string"
std::string toTextBeforeNul(const boost::json::value& value);
/// The same without a copy; lives as long as the value.
std::string_view viewBeforeNul(const boost::json::value& value);

/// An integer in the range, or a floating point number that is exactly such an integer.
/// @throws std::system_error with the conversion's code
std::uint32_t toCounter(const boost::json::value& value);
/// Seconds that are not negative, as a time point. What exceeds a time point wraps.
/// @throws std::system_error with the conversion's code
QuillTimePoint toTimePoint(const boost::json::value& value);
/// The same for seconds that may be negative.
QuillTimePoint toSignedTimePoint(const boost::json::value& value);

/// The value for the literal up to its first NUL byte, `Unknown` for a literal outside the table.
/// @throws std::invalid_argument "not a string"
template <class Enumeration>
Enumeration toEnumeration(const boost::json::value& value) {
    return valueOfLiteral<Enumeration>(viewBeforeNul(value)).value_or(Enumeration::Unknown);
}

/// Becomes the record when it is constructed from: in place, and not moved there.
template <class Record>
struct Conversion {
    Record (*convert)(const boost::json::value&);
    const boost::json::value& element;

    operator Record() const { return convert(element); }
};

/// The array's elements in order, each through `convert`.
template <class Record>
std::vector<Record> toList(const boost::json::array& array, Record (*convert)(const boost::json::value&)) {
    std::vector<Record> list;
    list.reserve(array.size());
    for (const boost::json::value& element : array) {
        list.emplace_back(Conversion<Record>{convert, element});
    }
    return list;
}

/// The members of one object. Decoders ask for them in nearly the order in which documents list them, or in
/// the reverse one: the neighbours of the last member found are tried before the object is searched.
class Members {
public:
    Members(const boost::json::object& object) noexcept;

    /// Null if it is absent.
    const boost::json::value* find(std::string_view key) const noexcept;

private:
    const boost::json::object& members;
    mutable boost::json::object::const_iterator last; ///< found last; the end at first
};

/// The array's elements in order, each through `read` into the record in its place, which keeps its storage.
template <class Record>
void readEach(const boost::json::array& array, std::vector<Record>& list,
              void (*read)(const boost::json::value&, Record&)) {
    list.resize(array.size());
    for (std::size_t index = 0; index < list.size(); ++index) {
        read(array[index], list[index]);
    }
}

/// A member that must be there.
/// @throws std::out_of_range "out of range"
const boost::json::value& member(const Members& object, std::string_view key);

/// A member that is a text or an array; null if it is absent or of another kind.
const boost::json::string* findText(const Members& object, std::string_view key) noexcept;
const boost::json::array* findArray(const Members& object, std::string_view key) noexcept;

/// Copies a text member, whole.
/// @return false, with `field` as it was, if the member is absent or no text
bool readText(const Members& object, std::string_view key, std::string& field);

/// Converts an array member, each element through `convert`.
/// @return false, with `field` as it was, if the member is absent or no array
template <class Record>
bool readList(const Members& object, std::string_view key, std::vector<Record>& field,
              Record (*convert)(const boost::json::value&)) {
    const boost::json::array* array = findArray(object, key);
    if (array) {
        field = toList(*array, convert);
    }
    return array != nullptr;
}

/// The same, each element through `read` into the record in its place.
template <class Record>
bool readList(const Members& object, std::string_view key, std::vector<Record>& field,
              void (*read)(const boost::json::value&, Record&)) {
    const boost::json::array* array = findArray(object, key);
    if (array) {
        readEach(*array, field, read);
    }
    return array != nullptr;
}

/// The fault of a nested record that is told by a code: `BadParameter` of "global_error".
[[noreturn]] void throwBadParameter();
/// The fault of a document that is told by a code: the same, in `error`.
void setBadParameter(std::error_code& error) noexcept;

/// Runs `decode` on a document that is an object. Its false, or another kind of document, is a soft failure:
/// `BadParameter` in `error`, and nothing to be relied on in `record`.
template <class Record>
void decodeInto(const boost::json::value& document, std::error_code& error, Record& record,
                bool (*decode)(const Members&, Record&)) {
    error.clear();
    const boost::json::object* object = document.if_object();
    if (!object || !decode(*object, record)) {
        setBadParameter(error);
    }
}

/// The same with a new record, which is empty after a soft failure.
template <class Record>
Record decodeDocument(const boost::json::value& document, std::error_code& error,
                      bool (*decode)(const Members&, Record&)) {
    Record record;
    decodeInto(document, error, record, decode);
    return error ? Record() : record;
}

} // namespace json_fields
