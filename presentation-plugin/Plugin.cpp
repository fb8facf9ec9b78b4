#include "wren/Plugin.h"

Plugin::Plugin() = default;
Plugin::Plugin(const Plugin&) {}
Plugin& Plugin::operator=(const Plugin&) { return *this; }
Plugin::~Plugin() = default;

#ifdef _WIN32
// An object that has its own table never gets here: this one has nothing to destroy.
void* Plugin::DeletingDestructor(unsigned int) { return this; }
#endif
