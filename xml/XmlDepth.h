/// How deep the elements of a text nest, told before the XML library parses it: the library calls itself for
/// each element within an element, and a text made of nothing but start tags would use up the stack.
#pragma once

#include <cstddef>

/// The deepest nesting that is parsed, the root counting as 1. No document of the protocol comes near; the
/// smallest stack that a host's thread has by default holds several times as much.
inline constexpr std::size_t deepestXmlNesting = 1000;

/// Whether an element of the text stands deeper than `limit`. Looks at markup just as the XML library does,
/// up to where the library would give up; needs one pass, no memory and no recursion.
/// @param text ends with a NUL
bool nestsDeeperThan(const char* text, std::size_t limit) noexcept;
