/// The machine's settings as the code under test finds them.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace test {

/// Where a setting stands on a Windows of 64 bits, which keeps two sets of settings: its own, and one for
/// programs of 32 bits. All other systems have one set.
enum class SettingsView { Both, Own, For32Bits };

/// Settings of the test's own makers, none at first, taken away at the end. One at a time in the system. Keys
/// are written as paths below "Software", such as "Maker/Product"; the makers are "Maker", "Norvane" and
/// "Sandpiper".
class MachineSettings {
public:
    explicit MachineSettings(SettingsView view = SettingsView::Both);
    MachineSettings(const MachineSettings&) = delete;
    MachineSettings& operator=(const MachineSettings&) = delete;
    ~MachineSettings();

    void setBytes(const std::string& key, const std::string& value, std::string_view bytes) const;
    /// @param text in UTF-8
    void setText(const std::string& key, const std::string& value, std::string_view text) const;

private:
    struct Place;
    std::unique_ptr<const Place> place;
};

} // namespace test
