#pragma once

#include "settings/file.h"

#include <functional>
#include <string>

namespace settings::content_filter {

// What an edit is of, for the refusal while the proxy runs.
enum class Subject { kRules, kMode };

// The gate of every edit: refuses while the proxy runs, then loads the file. `failure` is said of a file that
// can't be read, behind the file's own report.
[[nodiscard]] bool Open(Subject subject, File& file, const std::string& failure = "");

// What an edit says of its failures, behind what the steps have said themselves; "" is nothing.
struct Failures {
    std::string load;
    std::string change; // or saving it
};

// The frame of an edit: opens the file, makes the change and saves.
[[nodiscard]] bool Edit(Subject subject, const Failures& failures, const std::function<bool(File&)>& change);
[[nodiscard]] bool Edit(Subject subject, const std::function<bool(File&)>& change);

} // namespace settings::content_filter
