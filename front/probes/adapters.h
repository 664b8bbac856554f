#pragma once

// How many network adapters the system has and may have.

// The number of adapters in the system, negative when it can't be told. What std::stol throws of a failed
// command's output leaves the function.
long CountNetworkAdapters();

// The limit of this model.
long GetNetworkAdapterLimit();

// Whether the count is known and below the limit.
[[nodiscard]] bool CanAddNetworkAdapter();
