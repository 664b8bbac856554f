#include "shell/help.h"

#include "platform/messages.h"
#include "platform/pager.h"
#include "platform/shell_tree.h"
#include "shell/families.h"
#include "shell/pattern.h"
#include "shell/screen.h"
#include "shell/tree.h"

#include <algorithm>
#include <string>

namespace shell {
namespace {

// A word of the line may be short, and any text stands for a value.
bool BeginsSo(const Form& form, const Values& words) {
    return words.size() <= form.size() && std::equal(words.begin(), words.end(), form.begin(),
                                                     [](const std::string& word, const Token& token) {
                                                         return token.is_value ||
                                                                token.text.starts_with(word);
                                                     });
}

bool IsMeant(const Command& command, const Values& words) {
    if (command.run == nullptr || !IsInMode(command, Shell::Get().Mode()))
        return false;
    const std::vector<Form> forms = Expand(command.pattern);
    return std::any_of(forms.begin(), forms.end(), [&](const Form& form) { return BeginsSo(form, words); });
}

// The pattern, and its explanation below it. What goes on behind a full line stands deeper than both.
std::string FormatCommand(const Command& command) {
    constexpr std::size_t kExplanationIndent = 4;
    constexpr std::size_t kRestIndent = 8;
    const std::string pattern = command.pattern;
    return (pattern.size() <= LineWidth() ? pattern : WrapBehind(kRestIndent, pattern)) + "\n" +
           std::string(kExplanationIndent, ' ') + WrapBehind(kExplanationIndent, command.help) + "\n";
}

} // namespace

bool ShowHelp(const Values& words) {
    std::string text;
    for (const Family& family : Families()) {
        for (const Command& command : family.commands) {
            if (IsMeant(command, words))
                text += FormatCommand(command);
        }
    }
    if (text.empty())
        return Refuse("no command begins so");
    text += DescribeCompounds(text);
    ShellPager pager;
    std::FILE* const stream = pager.open();
    if (stream == nullptr)
        return false;
    std::fputs(text.c_str(), stream);
    pager.wait();
    return true;
}

} // namespace shell
