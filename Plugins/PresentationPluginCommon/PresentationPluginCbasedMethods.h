/// The records that a module hands to C hosts.
#pragma once

#include "wren/PresentationPluginCbased.h"

/// Makes a plugin and the record that drives it. Any thread; never throws.
/// @return to be given to `DisposeCbasedPresentationPlugin`; null on failure, which the log explains
PresentationPluginCbasedMethods* CreateCbasedPresentationPlugin() noexcept;

/// Ends a record and its plugin, which may call back `StopDone` meanwhile. Any thread; never throws.
/// @param methods any address: one that was not given out here, or that was disposed of, is logged and not
///     touched
/// @return whether the record was known
bool DisposeCbasedPresentationPlugin(PresentationPluginCbasedMethods* methods) noexcept;
