#pragma once

namespace shell {

// Whether what can't be got back is meant to go: asks where somebody sits at a terminal, as the units do.
[[nodiscard]] bool IsRemovalMeant(const char* question);

} // namespace shell
