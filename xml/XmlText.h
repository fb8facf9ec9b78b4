/// Text as it stands inside XML: the five special characters as references.
#pragma once

#include "common2/data/TextBuffer.h"

#include <string_view>

/// Appends a text in which `<`, `>`, `&`, `"` and `'` become references, save the character `kept`. It yields
/// what the XML library's printer yields, but copies what needs no reference in blocks.
void appendEscaped(common2::TextBuffer& out, std::string_view text, char kept = '\0');

/// Appends an attribute's value, which ends at its first NUL as in a tree, in its quotes: double ones, or
/// single ones around a value that holds double ones.
void appendQuoted(common2::TextBuffer& out, std::string_view value);
