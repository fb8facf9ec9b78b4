/// Goes through an object field by field, so that reading it, writing it and checking its schema follow one
/// description.
#pragma once

#include "backend-sim/Device.h"
#include "backend-sim/Words.h"

#include <boost/json/object.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace sim {

class FieldVisitor;
using VisitFields = std::function<void(FieldVisitor&)>;

/// A list of records as a visitor sees it.
class RecordList {
public:
    virtual std::size_t size() const = 0;
    virtual void clear() = 0;
    /// Adds a record whose fields hold what is usual.
    virtual void add() = 0;
    virtual void visit(std::size_t index, FieldVisitor& visitor) = 0;

protected:
    ~RecordList() = default;
};

enum class Presence { Optional, Required };

/// Is shown the fields of one object in their order and may change them. Keys are in static storage.
class FieldVisitor {
public:
    virtual void flag(std::string_view key, bool& value) = 0;
    virtual void number(std::string_view key, std::uint32_t& value, std::uint32_t smallest,
                        std::uint32_t largest) = 0;
    virtual void time(std::string_view key, Time& value) = 0;
    virtual void text(std::string_view key, std::string& value) = 0;
    /// A text that must not be empty.
    virtual void name(std::string_view key, std::string& value, Presence presence) = 0;
    virtual void word(std::string_view key, Word& value, Words words, Presence presence) = 0;
    virtual void object(std::string_view key, const VisitFields& fields) = 0;
    virtual void list(std::string_view key, RecordList& records) = 0;
    /// An object that may hold some of the device's fields, with which it is not empty.
    virtual void knobs(std::string_view key, boost::json::object& values) = 0;
    /// A text that may stand here and says nothing to the service.
    virtual void remark(std::string_view key) = 0;
    /// What must hold of the fields shown so far.
    /// @param key the field at fault, or empty for the object itself
    virtual void rule(bool holds, std::string_view key, const std::string& complaint) = 0;

protected:
    ~FieldVisitor() = default;
};

/// The latest time that a field may name: the end of the year 9999. The earliest is 0.
inline constexpr std::int64_t latestTime = 253'402'300'799;

} // namespace sim
