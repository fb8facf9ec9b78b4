/* Loading a module, as the system has it. */
#pragma once

/* NULL where the module can't be loaded; the reason goes to the standard error output. */
void* openModule(const char* file);

/* NULL where the module exports no such function. */
void* findInModule(void* module, const char* name);

void closeModule(void* module);
