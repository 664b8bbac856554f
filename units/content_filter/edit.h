#pragma once

#include "settings/file.h"

#include <functional>

namespace settings::content_filter {

// What an edit is of, for the refusal while the proxy runs.
enum class Subject { kRules, kMode };

// The frame of every edit: refuses while the proxy runs, loads the file, and makes the change, which saves
// what it did. `load_failure` is said of a file that can't be read, behind the file's own report.
[[nodiscard]] bool Edit(Subject subject, const std::string& load_failure,
                        const std::function<bool(File&)>& change);
[[nodiscard]] bool Edit(Subject subject, const std::function<bool(File&)>& change);

} // namespace settings::content_filter
