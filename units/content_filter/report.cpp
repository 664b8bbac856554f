#include "units/content_filter/report.h"

#include "front/helpers/stream.h"
#include "front/helpers/temporary.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "units/content_filter/defaults.h"
#include "units/content_filter/rule.h"
#include "units/content_filter/unit.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <unistd.h>

namespace settings::content_filter {
namespace {

constexpr const char* kTextPager = "/sbin/textpager.sh";

struct Label {
    const char* text;
    std::string RuleText::*value;
};

// The lines of a rule behind its number.
constexpr Label kLabels[] = {
    {"action", &RuleText::action},        {"@name", &RuleText::name},
    {"source", &RuleText::source},        {"destination", &RuleText::destination},
    {"http-command", &RuleText::command}, {"mime-type", &RuleText::mime_type},
};

constexpr int LongestLabel() {
    std::size_t longest = 0;
    for (const Label& label : kLabels)
        longest = std::max(longest, std::string_view(label.text).size());
    return static_cast<int>(longest);
}

void PrintHeading(std::FILE* out, const char* before, const char* text) {
    std::fprintf(out, "%s%s\n%s\n", before, text, std::string(std::strlen(text), '=').c_str());
}

void PrintValue(std::FILE* out, const char* label, const std::string& value) {
    std::fprintf(out, "%4s%-*s %s\n", "", LongestLabel(), label, value.c_str());
}

void PrintRule(std::FILE* out, std::size_t position, const RuleText& rule) {
    PrintValue(out, "@id", std::to_string(position));
    for (const Label& label : kLabels) {
        if (!(rule.*label.value).empty())
            PrintValue(out, label.text, rule.*label.value);
    }
    std::fprintf(out, "\n");
}

void PrintDefault(std::FILE* out, const char* name, const std::string& action, const char* all_of) {
    PrintValue(out, "act", action);
    PrintValue(out, "name", name);
    PrintValue(out, "src", kAnyAddress);
    PrintValue(out, "dst", kAnyAddress);
    PrintValue(out, all_of, "all");
}

void PrintRules(std::FILE* out, const File& file) {
    PrintHeading(out, "", "Content filter rules");
    const NodeSet rules = file.Select("/unit/rule");
    for (std::size_t i = 0; i < rules.Size(); ++i)
        PrintRule(out, i + 1, ReadRule(rules.At(i)));
    PrintHeading(out, "\n", "Rules for other content");
    PrintDefault(out, "default-request-action", GetDefaultRequestAction(file), "command");
    std::fprintf(out, "\n");
    PrintDefault(out, "default-reply-action", GetDefaultReplyAction(file), "mime-type");
}

// Makes the file that the pager reads; `path` is the template of its name, and becomes the name.
Stream WriteReport(std::string& path, const File& file) {
    const int descriptor = MakeTemporary(path);
    Stream out(descriptor >= 0 ? fdopen(descriptor, "w") : nullptr);
    if (out == nullptr) {
        if (descriptor >= 0)
            close(descriptor);
        PrintError("Unexpected case: can't open %s file for write", path);
        return nullptr;
    }
    PrintRules(out.get(), file);
    if (std::fflush(out.get()) == 0 && std::ferror(out.get()) == 0)
        return out;
    PrintError("%s: failed to write the rules", path);
    return nullptr;
}

} // namespace

bool ShowRules() {
    File file(kContentFilterUnit, "");
    if (!file.Load())
        return false;
    std::string path = "/tmp/rules_show_filename_XXXXXX";
    const Stream report = WriteReport(path, file);
    return report != nullptr && shell_spawn(kTextPager, path.c_str(), nullptr) == 0;
}

} // namespace settings::content_filter
