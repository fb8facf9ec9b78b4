/// What the decoders' tests expect of faults.
#pragma once

#include <boost/json/value.hpp>

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace test {

/// A call of a decoder, for EXPECT_THAT with the matchers below.
template <class Record>
auto decoding(Record (*decode)(boost::json::value, std::error_code&), boost::json::value document) {
    return [decode, document = std::move(document)] {
        std::error_code error;
        decode(document, error);
    };
}

inline auto throwsInvalidArgument(const char* message) {
    return testing::ThrowsMessage<std::invalid_argument>(message);
}

inline auto throwsOutOfRange() { return testing::ThrowsMessage<std::out_of_range>("out of range"); }

/// The system error of a code in that category, whose text is the code's and nothing else.
inline auto throwsSystemError(const char* category, const char* message) {
    const auto categoryOf = [](const std::error_code& code) { return std::string(code.category().name()); };
    return testing::Throws<std::system_error>(
        testing::AllOf(testing::Property(&std::system_error::what, testing::StrEq(message)),
                       testing::Property(&std::system_error::code, testing::ResultOf(categoryOf, category))));
}

inline auto throwsBadParameter() { return throwsSystemError("global_error", "BadParameter"); }
inline auto throwsNotExact() { return throwsSystemError("boost.json", "not exact"); }
inline auto throwsNotNumber() { return throwsSystemError("boost.json", "not a number"); }

} // namespace test
