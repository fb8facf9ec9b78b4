#include "wren/Plugin.h"

Plugin::Plugin() = default;
Plugin::Plugin(const Plugin&) {}
Plugin& Plugin::operator=(const Plugin&) { return *this; }
Plugin::~Plugin() = default;
