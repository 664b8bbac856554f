#pragma once

#include "settings/file.h"

#include <string>

// What the filter does with requests and replies that no rule took, and whether it works at all.

namespace settings::content_filter {

// An action is "pass" or another word; "" when none is set or the file can't be loaded.
std::string GetDefaultRequestAction();
std::string GetDefaultReplyAction();
// The same of a file that is loaded already.
std::string GetDefaultRequestAction(const File& file);
std::string GetDefaultReplyAction(const File& file);

[[nodiscard]] bool SetDefaultRequestAction(const std::string& value);
[[nodiscard]] bool SetDefaultReplyAction(const std::string& value);

[[nodiscard]] bool IsContentFilterOn();
[[nodiscard]] bool IsContentFilterOn(const File& file);
[[nodiscard]] bool SetContentFilterMode(bool on);

} // namespace settings::content_filter
