#pragma once

#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

// A command of the shell as one row of a table: the line that is typed, its explanation, and its action.

namespace shell {

using Values = std::vector<std::string>;

// What a value becomes as a parameter of an action. A family that names its things specialises it.
template <class Parameter>
struct Argument {
    explicit Argument(const std::string& text) : text(text) {}
    operator const std::string&() const { return text; }
    const std::string& text;
};

template <>
struct Argument<const char*> {
    explicit Argument(const std::string& text) : text(text) {}
    operator const char*() const { return text.c_str(); }
    const std::string& text;
};

// The numbers' stages have checked their digits and their range.
template <>
struct Argument<unsigned long> {
    explicit Argument(const std::string& text) : number(std::strtoul(text.c_str(), nullptr, 10)) {}
    operator unsigned long() const { return number; }
    unsigned long number;
};

template <>
struct Argument<long> {
    explicit Argument(const std::string& text) : number(std::strtol(text.c_str(), nullptr, 10)) {}
    operator long() const { return number; }
    long number;
};

// A plain function as the action of a row: kCall<&Function>.
template <auto function>
struct CallOf;
template <class... Parameters, bool (*function)(Parameters...)>
struct CallOf<function> {
    bool operator()(Parameters... parameters) const { return function(parameters...); }
};
template <auto function>
inline constexpr CallOf<function> kCall;

// What a row is besides.
enum Trait : unsigned {
    kPlain = 0,
    kShows = 1,     // changes no settings, so that it need not wait for another shell's change
    kInSingle = 2,  // makes sense in single mode alone
    kInCluster = 4, // makes sense in cluster mode alone
    kOwnLock = 8,   // its action takes a lock of its own, and may take as long as a person does
};

// The pattern's words are typed as they stand. "<name>" is a value: one of slots.cpp, a list "<on|off>" or a
// range "<1..120>". "[a|b]" may be left out, and is one of its forms otherwise. A row without an action is
// the help of a word that begins several commands.
struct Command {
    consteval Command(const char* words, const char* explanation)
        : pattern(words), help(explanation), run(nullptr), traits(kPlain) {}

    // An action takes each value of the pattern in its order, an empty one for what was left out.
    template <class Action>
    consteval Command(const char* words, const char* explanation, Action, unsigned row_traits = kPlain)
        : pattern(words), help(explanation), run(&Run<Action>), traits(row_traits) {
        if (CountValues(words) != std::tuple_size_v<ParametersOf<Action>>)
            throw "the action takes another number of values than the pattern has";
    }

    const char* pattern;
    const char* help;
    bool (*run)(const Values& values);
    unsigned traits;

    static constexpr std::size_t CountValues(std::string_view words) {
        std::size_t count = 0;
        for (const char letter : words)
            count += letter == '<' ? 1 : 0;
        return count;
    }

private:
    template <class Class, class... Parameters>
    static std::tuple<Parameters...> TakeParameters(bool (Class::*)(Parameters...) const);
    template <class Action>
    using ParametersOf = decltype(TakeParameters(&Action::operator()));

    template <class Action>
    static bool Run(const Values& values) {
        return Apply<Action>(values, std::make_index_sequence<std::tuple_size_v<ParametersOf<Action>>>());
    }
    template <class Action, std::size_t... place>
    static bool Apply([[maybe_unused]] const Values& values, std::index_sequence<place...>) {
        return Action{}(Argument<std::tuple_element_t<place, ParametersOf<Action>>>(values[place])...);
    }
};

} // namespace shell
