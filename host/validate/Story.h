/// A plugin's life that shows every screen once.
#pragma once

#include "host/BackendControls.h"
#include "host/PluginObject.h"

namespace host::validate {

/// Starts the plugin, which has to be registered, and takes it through an enrollment, alerts, logins, errors
/// and an unenrollment. The texts hold markup and letters from far away.
void tellStory(PluginObject& plugin, const BackendControls& backend);

/// Characters that XML must escape, and some that it need not.
inline constexpr const char* awkwardText = "a<b & \"c\" 'd' > \xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80";

} // namespace host::validate
