#include "units/content_filter/rule_warnings.h"

#include "platform/messages.h"
#include "units/content_filter/unit.h"

#include <algorithm>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <regex.h>

namespace settings::content_filter {
namespace {

bool IsLetterOrDigit(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

// The proxy takes a word with a "-" in front for an option, and compares all others with host names as they
// stand: a "*", a port or a path is never part of one.
bool IsDestination(std::string_view word) {
    const auto is_name = [](char character) {
        return IsLetterOrDigit(character) ||
               std::string_view("._-").find(character) != std::string_view::npos;
    };
    in6_addr address;
    return !word.starts_with('-') && (std::all_of(word.begin(), word.end(), is_name) ||
                                      inet_pton(AF_INET6, std::string(word).c_str(), &address) == 1);
}

// Methods stand between blanks. The proxy takes "GET,POST" for one that no request has.
bool IsMethod(std::string_view word) {
    const auto is_token = [](char character) {
        return IsLetterOrDigit(character) ||
               std::string_view("!#$%&'*+-.^_`|~").find(character) != std::string_view::npos;
    };
    return !word.starts_with('-') && std::all_of(word.begin(), word.end(), is_token);
}

bool IsRegularExpression(const std::string& text) {
    regex_t expression;
    if (regcomp(&expression, text.c_str(), REG_EXTENDED | REG_NOSUB) != 0)
        return false;
    regfree(&expression);
    return true;
}

// A "*" repeats what stands in front of it: "video/*" is "video" with slashes, and "*/*" is nothing at all.
bool IsMimeType(std::string_view word) {
    if (word.starts_with('*') || word.find("/*") != std::string_view::npos)
        return false;
    return word.find_first_of("[](){}|\\") == std::string_view::npos ||
           IsRegularExpression(std::string(word));
}

struct WarningRow {
    const char* element;
    std::string RuleText::*value;
    bool (*matches)(std::string_view word);
};

constexpr WarningRow kWarnings[] = {
    {"destination", &RuleText::destination, IsDestination},
    {"http-command", &RuleText::command, IsMethod},
    {"mime-type", &RuleText::mime_type, IsMimeType},
};

bool IsBlank(std::string_view list) {
    return TakeWord(list).empty();
}

void WarnOfAbsent(std::size_t position, const RuleText& rule) {
    const struct {
        const char* elements;
        bool absent;
    } rows[] = {
        {"source", IsBlank(rule.source)},
        {"destination", IsBlank(rule.destination)},
        {"http-command and mime-type", IsBlank(rule.command) && IsBlank(rule.mime_type)},
    };
    for (const auto& row : rows) {
        if (row.absent)
            PrintWarning("%s: rule %zu: without %s it never applies", kContentFilterUnit, position,
                         row.elements);
    }
}

} // namespace

void WarnIfNeverApplied(std::size_t position, const RuleText& rule) {
    WarnOfAbsent(position, rule);
    for (const WarningRow& row : kWarnings) {
        std::string_view words = rule.*row.value;
        if (words == kAnyAddress)
            continue;
        for (std::string_view word = TakeWord(words); !word.empty(); word = TakeWord(words)) {
            if (!row.matches(word))
                PrintWarning("%s: rule %zu: \"%s\" in %s never matches", kContentFilterUnit, position,
                             std::string(word), row.element);
        }
    }
}

} // namespace settings::content_filter
