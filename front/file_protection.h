#pragma once

// Renewal of the guards of protected files. No operation prints anything itself.

// Renews the guard of one file. The guard, <file>.crg, must exist.
[[nodiscard]] bool ProtectFile(const char* file);

// Renews the guards of all protected settings of the appliance, in a fixed order, up to the first failure.
[[nodiscard]] bool ProtectAllSettings();
