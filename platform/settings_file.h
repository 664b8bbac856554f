#pragma once

#include <string>
#include <string_view>

// Writes the text onto the file, which is made when it is not there; with `secret` nobody but its owner can
// read it. Room is taken before a byte changes, so that a full disk leaves the old text whole, and the new
// one is on disk when this is done. A link is followed. False with errno.
[[nodiscard]] bool WriteSettingsFile(const std::string& path, std::string_view text, bool secret);
