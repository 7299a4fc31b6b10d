#pragma once

/// The user's wish to end the program, which long operations look at where they can stop.
namespace Interrupt {

/// From now on the interrupt key, and a request to terminate, only make requested() true.
void keep();
bool requested();

} // namespace Interrupt
