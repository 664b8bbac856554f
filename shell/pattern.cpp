#include "shell/pattern.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace shell {
namespace {

// A value that is typed as several words.
struct Compound {
    std::string_view name;
    std::string_view forms;
};

constexpr Compound kCompounds[] = {
    {"<area>", "interface <interface>|subnet <network> <netmask>|host <host>"},
    {"<subnet>", "interface <interface>|subnet <network> <netmask>"},
};

const Compound* FindCompound(std::string_view text) {
    for (const Compound& compound : kCompounds) {
        if (compound.name == text)
            return &compound;
    }
    return nullptr;
}

using Forms = std::vector<Form>;

// Each form of `heads` with each of `tails` behind it.
Forms Join(const Forms& heads, const Forms& tails) {
    Forms joined;
    for (const Form& head : heads) {
        for (const Form& tail : tails) {
            joined.push_back(head);
            joined.back().insert(joined.back().end(), tail.begin(), tail.end());
        }
    }
    return joined;
}

// The end of the alternative: a "|" outside a value, or the end of the text.
std::size_t FindBar(std::string_view text) {
    bool is_value = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '<' || text[i] == '>')
            is_value = text[i] == '<';
        else if (text[i] == '|' && !is_value)
            return i;
    }
    return text.size();
}

class Expansion {
public:
    Forms Sequence(std::string_view text) {
        Forms forms = {{}};
        while (!text.empty()) {
            const std::size_t end = text[0] == '[' ? text.find(']') + 1 : text.find(' ');
            const std::string_view part = text.substr(0, end);
            if (!part.empty())
                forms = Join(forms, part[0] == '[' ? Optional(part.substr(1, part.size() - 2)) : Word(part));
            text.remove_prefix(std::min(part.size() + 1, text.size()));
        }
        return forms;
    }

private:
    Forms Optional(std::string_view text) {
        Forms forms = Alternatives(text);
        forms.emplace_back();
        return forms;
    }

    Forms Alternatives(std::string_view text) {
        Forms forms;
        for (;;) {
            const std::size_t end = FindBar(text);
            for (Form& form : Sequence(text.substr(0, end)))
                forms.push_back(std::move(form));
            if (end == text.size())
                return forms;
            text.remove_prefix(end + 1);
        }
    }

    Forms Word(std::string_view text) {
        const bool is_value = text[0] == '<';
        if (!is_value || inside_)
            return {{{std::string(text), is_value, inside_ ? place_ : -1}}};
        ++place_;
        const Compound* const compound = FindCompound(text);
        if (compound != nullptr)
            return Inside(compound->forms);
        if (text.find('|') != std::string_view::npos)
            return Inside(text.substr(1, text.size() - 2));
        return {{{std::string(text), true, place_}}};
    }

    // The forms of one value.
    Forms Inside(std::string_view text) {
        inside_ = true;
        Forms forms = Alternatives(text);
        inside_ = false;
        return forms;
    }

    int place_ = -1;
    bool inside_ = false; // a value
};

} // namespace

std::vector<Form> Expand(std::string_view pattern) {
    return Expansion().Sequence(pattern);
}

std::string DescribeCompounds(std::string_view text) {
    std::string lines;
    for (const Compound& compound : kCompounds) {
        if (text.find(compound.name) == std::string_view::npos)
            continue;
        std::string forms(compound.forms);
        for (std::size_t bar = forms.find('|'); bar != std::string::npos; bar = forms.find('|'))
            forms.replace(bar, 1, " or ");
        lines += std::string(compound.name) + " in these lines is typed as\n    " + forms + "\n";
    }
    return lines;
}

} // namespace shell
