#pragma once

#include <string>

// The settings of the web interface, /mnt/main/etc/settings/webui.xml:
//
//     <unit name="webui">
//       <ssl>
//         <protocol>https</protocol>                              (or "http")
//         <certificate>/mnt/main/etc/cert/site.pem</certificate>  (or empty)
//         <key>/mnt/main/etc/cert/site.key</key>                  (or empty)
//       </ssl>
//       <server><port>443</port></server>
//     </unit>
//
// Callers name certificates and keys by their bare file names. Every failure is reported; a setter that fails
// saves nothing. A field that is not there can't be set, and reads as an empty text.

[[nodiscard]] bool WebUiSetHttps(bool https);
[[nodiscard]] bool WebUiGetHttps(bool& https);
// An empty or null name clears the field.
[[nodiscard]] bool WebUiSetCertificate(const char* name);
// A file outside the certificates' folder comes back with its whole path.
[[nodiscard]] bool WebUiGetCertificate(std::string& name);
[[nodiscard]] bool WebUiSetKey(const char* name);
[[nodiscard]] bool WebUiGetKey(std::string& name);
[[nodiscard]] bool WebUiSetPort(unsigned long port);
// What std::stoul throws of a field that holds no number leaves the function.
[[nodiscard]] bool WebUiGetPort(unsigned long& port);

// Whether the HTTPS certificate names the address. A question that can't be answered counts as no.
[[nodiscard]] bool is_ip_in_webui_https_cert(const std::string& address);
