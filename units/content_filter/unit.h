#pragma once

struct _xmlURI;

// The host part of the unit's URI, the name in its settings file and the base name of that file.
inline constexpr const char* kContentFilterUnit = "content-filter";

// The handler of unit://content-filter: writes the filter's part of the proxy's configuration. It takes no
// query. Every failure is reported.
[[nodiscard]] bool ContentFilterUnit(const _xmlURI* uri);
