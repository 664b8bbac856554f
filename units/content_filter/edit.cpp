#include "units/content_filter/edit.h"

#include "platform/messages.h"
#include "platform/processes.h"
#include "units/content_filter/unit.h"

namespace settings::content_filter {
namespace {

constexpr const char* kProxyScript = "/etc/init.d/http_proxy.sh";

bool IsPermitted(Subject subject) {
    if (shell_spawn(kProxyScript, "squid_is_running", nullptr) != 0)
        return true;
    PrintInfo("Can't edit %s. HTTP-proxy is running.", subject == Subject::kRules ? "rules" : "mode");
    return false;
}

bool RefuseBehind(const std::string& failure) {
    return failure.empty() ? false : Refuse("%s", failure);
}

} // namespace

bool Open(Subject subject, File& file, const std::string& failure) {
    return IsPermitted(subject) && (file.Load() || RefuseBehind(failure));
}

bool Edit(Subject subject, const Failures& failures, const std::function<bool(File&)>& change) {
    File file(kContentFilterUnit, "");
    return Open(subject, file, failures.load) &&
           ((change(file) && file.Save()) || RefuseBehind(failures.change));
}

bool Edit(Subject subject, const std::function<bool(File&)>& change) {
    return Edit(subject, {}, change);
}

} // namespace settings::content_filter
