#include "units/content_filter/proxy_settings.h"

#include "front/helpers/stream.h"
#include "platform/messages.h"
#include "units/content_filter/defaults.h"
#include "units/content_filter/rule.h"
#include "units/content_filter/rule_warnings.h"
#include "units/content_filter/unit.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace settings::content_filter {
namespace {

std::string ConfigurationPath() {
    return std::string("/etc/squid/") + kContentFilterUnit + ".conf";
}

// Adds an ACL of the rule and gives its name. The blank in front lets names follow each other.
std::string AddAcl(std::string& text, const std::string& rule, const char* part, const std::string& test) {
    const std::string name = " " + rule + "_" + part;
    text += "acl" + name + " " + test + "\n";
    return name;
}

std::string AddAddressAcl(std::string& text, const std::string& rule, const char* part, const char* type,
                          const std::string& value) {
    return value == kAnyAddress ? "" : AddAcl(text, rule, part, std::string(type) + " " + value);
}

std::string FormatRule(std::size_t position, const RuleText& rule) {
    const std::string number = std::to_string(position);
    const std::string prefix = "rule_" + number;
    const std::string action = rule.action == "drop" ? "deny" : "allow";
    std::string text = "# rule: " + number + ": " + (rule.name.empty() ? "?" : rule.name) + "\n";
    const std::string source = AddAddressAcl(text, prefix, "source", "src", rule.source);
    const std::string destination = AddAddressAcl(text, prefix, "destination", "dstdomain", rule.destination);
    if (!rule.mime_type.empty()) {
        const std::string mime =
            AddAcl(text, prefix, "mime_type", "rep_mime_type -i " + FormatMimeTypes(rule.mime_type));
        text += "http_reply_access " + action + source + mime + destination + "\n";
    }
    if (!rule.command.empty()) {
        const std::string command = AddAcl(text, prefix, "command", "method " + rule.command);
        text += "http_access " + action + source + command + destination + "\n";
    }
    return text;
}

// The rules for replies come first, then those for requests. False when a rule had to be left out.
bool FormatRules(const File& file, std::string& text) {
    const NodeSet rules = file.Select("/unit/rule");
    std::string held_back;
    bool good = true;
    for (std::size_t i = 0; i < rules.Size(); ++i) {
        RuleText rule = ReadRule(rules.At(i));
        if (const char* unfit = FindUnfit(rule)) {
            good = Refuse("%s: rule %zu: the text of %s cannot stand in the proxy configuration",
                          kContentFilterUnit, i + 1, unfit);
            continue;
        }
        WarnIfNeverApplied(i + 1, rule);
        const bool is_request = rule.mime_type.empty() && !rule.command.empty();
        (is_request ? held_back : text) += FormatRule(i + 1, rule);
    }
    text += held_back;
    return good;
}

const char* Access(const std::string& default_action) {
    return default_action == "pass" ? "allow" : "deny";
}

bool RefuseFile() {
    return Refuse("%s: failed to apply %s configuration: %s", ConfigurationPath(), kContentFilterUnit,
                  std::strerror(errno));
}

} // namespace

bool WriteProxySettings(const File& file) {
    Stream out(std::fopen(ConfigurationPath().c_str(), "we"));
    if (out == nullptr)
        return RefuseFile();
    if (!IsContentFilterOn(file))
        return true;
    std::string text;
    const bool good = FormatRules(file, text);
    text += std::string("\nhttp_access ") + Access(GetDefaultRequestAction(file)) + " all\n";
    text += std::string("http_reply_access ") + Access(GetDefaultReplyAction(file)) + " all\n";
    std::fwrite(text.data(), 1, text.size(), out.get());
    if (std::fflush(out.get()) != 0 || std::ferror(out.get()) != 0 || std::fclose(out.release()) != 0)
        return RefuseFile();
    return good;
}

} // namespace settings::content_filter
