#pragma once

#include <string>
#include <string_view>
#include <vector>

// The forms of a command's pattern.

namespace shell {

// One word of a form.
struct Token {
    std::string text; // the word, or the value's name in "<" and ">"
    bool is_value;
    int place; // of the action's value that the word joins, -1 for none
};

using Form = std::vector<Token>;

// Every line that the pattern "a [b <x>|c] <on|off>" stands for, as the words of each. The words of
// "<on|off>" are typed as they stand, and are its value. "<area>" stands for forms of several words, which
// join the one value that it is to the action.
std::vector<Form> Expand(std::string_view pattern);

// What the values of several words that stand in the text are typed as, in lines for the help.
std::string DescribeCompounds(std::string_view text);

} // namespace shell
