#include "units/content_filter/rules.h"

#include "platform/messages.h"
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
    return FindName(rules, name) == rules.Size() || Refuse("%s: duplicate rule name", name);
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
    const char* unfit = FindUnfit(text);
    return unfit == nullptr ||
           Refuse("content-filter: the text of %s cannot stand in the proxy configuration", unfit);
}

bool Populate(Node rule, const RuleText& text) {
    bool good = text.name.empty() || rule.SetAttr("name", text.name);
    for (const RuleField& field : kRuleFields) {
        const std::string& value = text.*field.value;
        good = good && (value.empty() || rule.AddChild(field.element, value));
    }
    return good || Refuse("failed to populate configuration");
}

std::size_t ClampPosition(std::size_t position, std::size_t count) {
    return position == 0 || position > count ? count : position;
}

// Moves the rule that `find` gives the position of. A rule that is in its place costs no writing.
template <class... Arguments>
bool Move(const std::function<std::size_t(const NodeSet&)>& find, std::size_t to,
          FormatFor<Arguments...> failure, const Arguments&... arguments) {
    File file(kContentFilterUnit, "");
    if (!Open(Subject::kMode, file))
        return false;
    const NodeSet rules = SelectRules(file);
    const std::size_t start = find(rules);
    const std::size_t end = ClampPosition(to, rules.Size());
    if (start == end)
        return true;
    Node target = rules.At(end - 1);
    const Node rule = rules.At(start - 1);
    const Node moved = end <= start ? target.AddPrevSibling(rule) : target.AddNextSibling(rule);
    return moved ? file.Save() : Refuse<Arguments...>(failure, arguments...);
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
        if (!rule)
            return Refuse("failed to create rule");
        RuleText text{name, source, destination, command, mime_type, action};
        if (name.empty())
            text.name = MakeName(file);
        else if (!IsNameFree(file, name))
            return false;
        return CheckTexts(text) && Populate(rule, text);
    });
}

bool EditRule(std::size_t position, const std::string& name, const std::string& source,
              const std::string& destination, const std::string& command, const std::string& mime_type,
              const std::string& action) {
    const Failures failures = {"could not parse xml file " + GetFilePath(kContentFilterUnit), ""};
    return Edit(Subject::kRules, failures, [&](File& file) {
        const Node rule = FindRule(file, position);
        if (!rule)
            return Refuse("could not find rule with id %zu", position);
        const RuleText text{name, source, destination, command, mime_type, action};
        if ((!name.empty() && !IsNameFree(file, name)) || !CheckTexts(text))
            return false;
        for (const RuleField& field : kRuleFields) {
            if (!(text.*field.value).empty())
                file.SelectFrom(rule, "%s", field.element).RemoveAll();
        }
        return Populate(rule, text);
    });
}

bool MoveRule(std::size_t from, std::size_t to) {
    return Move([from](const NodeSet& rules) { return ClampPosition(from, rules.Size()); }, to,
                "failed to move from position %zu to position %zu", from, to);
}

bool MoveRuleByName(const std::string& name, std::size_t to) {
    return Move([&name](const NodeSet& rules) { return FindName(rules, name) + 1; }, to,
                "%s: failed to move to position %zu", name, to);
}

bool DeleteRule(std::size_t position) {
    const std::string failure = "failed to delete rule at position " + std::to_string(position);
    return Edit(Subject::kRules, {"", failure}, [position](File& file) {
        Node rule = FindRule(file, position);
        return rule && rule.Remove();
    });
}

bool DeleteRuleByName(const std::string& name) {
    return Edit(Subject::kRules, {"", name + ": failed to delete rule"}, [&name](File& file) {
        const NodeSet rules = SelectRules(file);
        Node rule = rules.At(FindName(rules, name));
        return rule && rule.Remove();
    });
}

} // namespace settings::content_filter
