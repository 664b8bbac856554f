#include "units/content_filter/defaults.h"

#include "platform/messages.h"
#include "units/content_filter/edit.h"
#include "units/content_filter/unit.h"

namespace settings::content_filter {
namespace {

constexpr const char* kRequestAction = "default-request-action";
constexpr const char* kReplyAction = "default-reply-action";

std::string GetDefaultAction(const File& file, const char* element) {
    return file.GetText("/unit/%s[string(@value)]/@value", element);
}

std::string GetDefaultAction(const char* element) {
    File file(kContentFilterUnit, "");
    return file.Load() ? GetDefaultAction(file, element) : "";
}

bool SetDefaultAction(const char* element, const std::string& value) {
    const Failures failures = {"Content-filter config parse fail", std::string("Failed set ") + element};
    const bool set = Edit(Subject::kMode, failures, [&](File& file) {
        return file.Select("/unit/%s", element).RemoveAll() &&
               file.Root().AddChild(element).NewAttr("value", value);
    });
    if (set)
        PrintInfo("Set %s to %s", element, value);
    return set;
}

} // namespace

std::string GetDefaultRequestAction() {
    return GetDefaultAction(kRequestAction);
}

std::string GetDefaultReplyAction() {
    return GetDefaultAction(kReplyAction);
}

std::string GetDefaultRequestAction(const File& file) {
    return GetDefaultAction(file, kRequestAction);
}

std::string GetDefaultReplyAction(const File& file) {
    return GetDefaultAction(file, kReplyAction);
}

bool SetDefaultRequestAction(const std::string& value) {
    return SetDefaultAction(kRequestAction, value);
}

bool SetDefaultReplyAction(const std::string& value) {
    return SetDefaultAction(kReplyAction, value);
}

bool IsContentFilterOn() {
    File file(kContentFilterUnit, "");
    return file.Load() && IsContentFilterOn(file);
}

bool IsContentFilterOn(const File& file) {
    return file.GetText("/unit/mode") == "on";
}

bool SetContentFilterMode(bool on) {
    return Edit(Subject::kMode, [on](File& file) {
        Node mode = file.SelectFirst("/unit/mode");
        if (!mode)
            mode = file.Root().AddChild("mode");
        return mode.SetText("%s", on ? "on" : "off");
    });
}

} // namespace settings::content_filter
