/// How one text may be spelled inside others, and putting something in its place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Whether the character may stand in an id or a name: a letter or digit of ASCII, "_" or "-".
bool isWordCharacter(char character);

/// The text as it is, as XML and JSON spell it, and as XML spells its JSON; the longest first.
std::vector<std::string> spellingsOf(const std::string& text);

/// Replaces the old text wherever it stands.
/// @param onlyWords leaves it where a word character stands beside it
/// @return how often it was replaced
std::size_t replaceAll(std::string& text, std::string_view old, std::string_view replacement, bool onlyWords);

} // namespace host
