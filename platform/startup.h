#pragma once

// Start-up and clean-up of the libraries that a program of the appliance needs first.

namespace TOO {

void ErrorInit();
void ErrorFini();

} // namespace TOO

// Starts the cryptographic library. False when it can't be started.
bool InitCSPShort();
