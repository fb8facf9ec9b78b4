/// How a check says what it found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host::validate {

using Lines = std::vector<std::string>;

/// Ends a check: the module broke the rule. The message says how, in one line.
class CheckFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// @param wrong what is so where it is not as it should be
/// @throws CheckFailure with it
void expect(bool isAsItShouldBe, std::string_view wrong);

/// @param what the subject of the reason: "the label"
/// @throws CheckFailure that tells both values, and of lines the first that differs
void expectEqual(std::string_view what, std::int64_t seen, std::int64_t wanted);
void expectEqual(std::string_view what, std::string_view seen, std::string_view wanted);
void expectEqual(std::string_view what, const Lines& seen, const Lines& wanted);

/// @throws CheckFailure where none of the lines is the wanted one
void expectContains(std::string_view what, const Lines& seen, std::string_view wanted);

/// A line by its index, or "missing".
std::string lineAt(const Lines& lines, std::size_t index);
/// As many lines from an index on as there are, `count` at most.
Lines linesFrom(const Lines& lines, std::size_t index, std::size_t count);

/// Words in a row, without a separator.
std::string joined(std::initializer_list<std::string_view> words);

} // namespace host::validate
