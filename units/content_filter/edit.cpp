#include "units/content_filter/edit.h"

#include "platform/console.h"
#include "platform/processes.h"
#include "units/content_filter/unit.h"

namespace settings::content_filter {
namespace {

constexpr const char* kProxyScript = "/etc/init.d/http_proxy.sh";

bool IsPermitted(Subject subject) {
    if (shell_spawn(kProxyScript, "squid_is_running", nullptr) != 0)
        return true;
    shell_print_info("Can't edit %s. HTTP-proxy is running.", subject == Subject::kRules ? "rules" : "mode");
    return false;
}

} // namespace

bool Edit(Subject subject, const std::string& load_failure, const std::function<bool(File&)>& change) {
    if (!IsPermitted(subject))
        return false;
    File file(kContentFilterUnit, "");
    if (file.Load())
        return change(file);
    if (!load_failure.empty())
        shell_print_error("%s", load_failure.c_str());
    return false;
}

bool Edit(Subject subject, const std::function<bool(File&)>& change) {
    return Edit(subject, "", change);
}

} // namespace settings::content_filter
