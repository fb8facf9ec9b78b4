/// A notice as a plugin writes it.
#pragma once

#include <string>

namespace test {

/// A notice of that type with that content; `more` are attributes of it, each after a space.
inline std::string noticeText(const std::string& type, const std::string& content,
                              const std::string& more = {}) {
    return "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"" + type +
           "\" timestamp=\"now\"" + more + ">" + content + "</vtguiNotice>";
}

} // namespace test
