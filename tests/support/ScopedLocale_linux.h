/// A host's locale for the length of a test.
#pragma once

#include "tests/support/ScopedEnvironment.h"

#include <clocale>
#include <stdexcept>
#include <string>

namespace test {

/// Locales of three encodings that are not UTF-8. The build makes them; the system need not have any.
inline constexpr const char* foreignLocales[] = {"tr_TR.ISO-8859-9", "fr_FR.ISO-8859-1", "ja_JP.EUC-JP"};

/// Sets the process's locale as a host does that follows its user.
class ScopedLocale {
public:
    /// @param name one of `foreignLocales`
    explicit ScopedLocale(const char* name) {
        if (std::setlocale(LC_ALL, name) == nullptr) {
            throw std::runtime_error(std::string("no locale ") + name);
        }
    }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    ~ScopedLocale() { std::setlocale(LC_ALL, "C"); }

private:
    ScopedEnvironment folder{"LOCPATH", WREN_LOCALES_FOLDER};
};

} // namespace test
