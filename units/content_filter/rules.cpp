#include "units/content_filter/rules.h"

#include "platform/console.h"
#include "units/content_filter/edit.h"
#include "units/content_filter/unit.h"

#include <charconv>
#include <cstring>
#include <set>

namespace settings::content_filter {
namespace {

constexpr const char* kNamePrefix = "rule_";

NodeSet SelectRules(const File& file) {
    return file.Select("/unit/rule");
}

Node FindRule(const File& file, std::size_t position) {
    return file.SelectFirst("/unit/rule[%zu]", position);
}

// The index of /unit/rule[@name = '<name>'], the size of the set when there is none. A name may hold a quote,
// which a query can't.
std::size_t FindName(const NodeSet& rules, const std::string& name) {
    std::size_t i = 0;
    while (i < rules.Size() && rules.At(i).GetAttr("name") != name)
        ++i;
    return i;
}

bool IsNameFree(const File& file, const std::string& name) {
    const NodeSet rules = SelectRules(file);
    if (FindName(rules, name) == rules.Size())
        return true;
    shell_print_error("%s: duplicate rule name", name.c_str());
    return false;
}

// "rule_<k>" with k behind the first run of such names; a gap further on is not looked for.
std::string MakeName(const File& file) {
    const NodeSet names = file.Select("/unit/rule[starts-with(@name, '%s')]/@name", kNamePrefix);
    std::set<std::size_t> numbers;
    for (std::size_t i = 0; i < names.Size(); ++i) {
        const std::string digits = names.At(i).GetText().substr(std::strlen(kNamePrefix));
        std::size_t number = 0;
        const char* end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(digits.data(), end, number);
        if (error == std::errc() && stop == end)
            numbers.insert(number);
    }
    std::size_t next = numbers.empty() ? 1 : *numbers.begin() + 1;
    while (numbers.contains(next))
        ++next;
    return kNamePrefix + std::to_string(next);
}

bool CheckTexts(const RuleText& text) {
    std::string fault;
    if (IsConfigurable(text, fault))
        return true;
    shell_print_error("content-filter: the text of %s cannot stand in the proxy configuration",
                      fault.c_str());
    return false;
}

bool Populate(Node rule, const RuleText& text) {
    bool good = text.name.empty() || rule.SetAttr("name", "%s", text.name.c_str());
    for (const RuleField& field : kRuleFields) {
        const std::string& value = text.*field.value;
        good = good && (value.empty() || rule.AddChild(field.element, "%s", value.c_str()));
    }
    if (!good)
        shell_print_error("failed to populate configuration");
    return good;
}

std::size_t ClampPosition(std::size_t position, std::size_t count) {
    return position == 0 || position > count ? count : position;
}

bool Move(const NodeSet& rules, std::size_t from, std::size_t to) {
    Node target = rules.At(to - 1);
    const Node rule = rules.At(from - 1);
    return static_cast<bool>(to <= from ? target.AddPrevSibling(rule) : target.AddNextSibling(rule));
}

} // namespace

std::size_t GetRuleCount() {
    File file(kContentFilterUnit, "");
    return file.Load() ? SelectRules(file).Size() : 0;
}

std::vector<std::string> ListRuleNames() {
    std::vector<std::string> names;
    File file(kContentFilterUnit, "");
    if (!file.Load())
        return names;
    const NodeSet nodes = file.Select("/unit/rule[string(@name)]/@name");
    for (std::size_t i = 0; i < nodes.Size(); ++i)
        names.push_back(nodes.At(i).GetText());
    return names;
}

bool AddRule(std::size_t position, const std::string& name, const std::string& source,
             const std::string& destination, const std::string& command, const std::string& mime_type,
             const std::string& action) {
    return Edit(Subject::kRules, [&](File& file) {
        Node next = position == 0 ? Node() : FindRule(file, position);
        Node rule = file.Root().AddChild("rule");
        if (next)
            rule = next.AddPrevSibling(rule);
        if (!rule) {
            shell_print_error("failed to create rule");
            return false;
        }
        RuleText text{name, source, destination, command, mime_type, action};
        if (name.empty())
            text.name = MakeName(file);
        else if (!IsNameFree(file, name))
            return false;
        return CheckTexts(text) && Populate(rule, text) && file.Save();
    });
}

bool EditRule(std::size_t position, const std::string& name, const std::string& source,
              const std::string& destination, const std::string& command, const std::string& mime_type,
              const std::string& action) {
    const std::string load_failure = "could not parse xml file " + GetFilePath(kContentFilterUnit);
    return Edit(Subject::kRules, load_failure, [&](File& file) {
        const Node rule = FindRule(file, position);
        if (!rule) {
            shell_print_error("could not find rule with id %zu", position);
            return false;
        }
        const RuleText text{name, source, destination, command, mime_type, action};
        if ((!name.empty() && !IsNameFree(file, name)) || !CheckTexts(text))
            return false;
        for (const RuleField& field : kRuleFields) {
            if (!(text.*field.value).empty())
                file.SelectFrom(rule, "%s", field.element).RemoveAll();
        }
        return Populate(rule, text) && file.Save();
    });
}

bool MoveRule(std::size_t from, std::size_t to) {
    return Edit(Subject::kMode, [&](File& file) {
        const NodeSet rules = SelectRules(file);
        const std::size_t start = ClampPosition(from, rules.Size());
        const std::size_t end = ClampPosition(to, rules.Size());
        if (start == end)
            return true;
        if (Move(rules, start, end))
            return file.Save();
        shell_print_error("failed to move from position %zu to position %zu", from, to);
        return false;
    });
}

bool MoveRuleByName(const std::string& name, std::size_t to) {
    return Edit(Subject::kMode, [&](File& file) {
        const NodeSet rules = SelectRules(file);
        const std::size_t start = FindName(rules, name) + 1;
        const std::size_t end = ClampPosition(to, rules.Size());
        if (start == end)
            return true;
        if (Move(rules, start, end))
            return file.Save();
        shell_print_error("%s: failed to move to position %zu", name.c_str(), to);
        return false;
    });
}

bool DeleteRule(std::size_t position) {
    return Edit(Subject::kRules, [&](File& file) {
        Node rule = FindRule(file, position);
        if (rule && rule.Remove() && file.Save())
            return true;
        shell_print_error("failed to delete rule at position %zu", position);
        return false;
    });
}

bool DeleteRuleByName(const std::string& name) {
    return Edit(Subject::kRules, [&](File& file) {
        const NodeSet rules = SelectRules(file);
        Node rule = rules.At(FindName(rules, name));
        if (rule && rule.Remove() && file.Save())
            return true;
        shell_print_error("%s: failed to delete rule", name.c_str());
        return false;
    });
}

} // namespace settings::content_filter
