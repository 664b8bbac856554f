#pragma once

#include "settings/file.h"

// The part of squid's configuration that the filter writes. Replies are judged by their content type,
// requests by their method:
//
//     # rule: 2: no-video
//     acl rule_2_mime_type rep_mime_type -i ^video/mp4(;.*)?$
//     http_reply_access deny rule_2_mime_type
//     # rule: 1: no-uploads
//     acl rule_1_source src 10.0.0.0/8
//     acl rule_1_command method POST
//     http_access deny rule_1_source rule_1_command
//
//     http_access allow all
//     http_reply_access allow all

namespace settings::content_filter {

// Writes the file, an empty one when the filter is off. Every failure is reported. A rule with a text that
// the proxy would read as more than a value is left out and fails the whole.
[[nodiscard]] bool WriteProxySettings(const File& file);

} // namespace settings::content_filter
