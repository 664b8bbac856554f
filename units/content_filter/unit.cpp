#include "units/content_filter/unit.h"

#include "settings/file.h"
#include "units/content_filter/proxy_settings.h"

bool ContentFilterUnit(const _xmlURI* /*uri*/) {
    settings::File file(kContentFilterUnit, "");
    return file.Load() && settings::content_filter::WriteProxySettings(file);
}
