/// What the module has of the system, counted so that it can be given back.
#pragma once

namespace moduleLife {

/// Closes and frees what the module's code has taken and not given back. Nothing of the module may run
/// afterwards.
void giveBackBorrowedObjects();

} // namespace moduleLife
