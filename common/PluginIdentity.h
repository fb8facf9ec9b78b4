/// What the plugin calls itself, towards the host, the user and the log.
#pragma once

namespace pluginIdentity {

inline constexpr const char* identity = "com.norvane.vantor.presentation.quill";
inline constexpr const char* label = "Wren Gate";
inline constexpr const char* version = "5.1.11.2143";

/// Name of the whole product, as toasts and popups show it.
inline constexpr const char* suite = "Norvane Kestrel Suite";

/// Title of every browser window, and the first part of the user agent.
inline constexpr const char* suiteAndLabel = "Norvane Kestrel Suite - Wren Gate";

/// Name under which the module logs.
inline constexpr const char* logSource = "kes_wren_presentation_plugin";

} // namespace pluginIdentity
