#include "tests/support/MachineSettings.h"

#include "host/system/DataFolder.h"
#include "tests/support/TemporaryFolder.h"

namespace test {

struct MachineSettings::Place {
    TemporaryFolder folder;
    host::DataFolder data{folder.path()};
};

MachineSettings::MachineSettings(SettingsView)
    : place(std::make_unique<Place>()) {}
MachineSettings::~MachineSettings() = default;

void MachineSettings::setBytes(const std::string& key, const std::string& value,
                               std::string_view bytes) const {
    place->folder.write(key + "/" + value, bytes);
}

void MachineSettings::setText(const std::string& key, const std::string& value, std::string_view text) const {
    setBytes(key, value, std::string(text) + "\n");
}

} // namespace test
