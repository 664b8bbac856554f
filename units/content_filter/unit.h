#pragma once

struct _xmlURI;

// The handler of unit://content-filter: writes the filter's part of the proxy's configuration. It takes no
// query. Every failure is reported.
[[nodiscard]] bool ContentFilterUnit(const _xmlURI* uri);
