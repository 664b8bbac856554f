#include "shell/call.h"

#include "shell/change_lock.h"
#include "shell/families.h"
#include "shell/slots.h"

#include <algorithm>
#include <utility>

namespace shell {
namespace {

bool IsTaken(const Token& token, const std::string& word) {
    return token.is_value ? MakeStage(token.text)->match(word) : token.text == word;
}

// How well the line has the form: how many of its words stand in it, and how many of its values are good
// ones. Without a value when it hasn't.
std::optional<std::pair<std::size_t, std::size_t>> Rate(const Form& form, const Values& words) {
    if (words.size() != form.size())
        return std::nullopt;
    std::pair<std::size_t, std::size_t> rate;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool is_taken = IsTaken(form[i], words[i]);
        if (!is_taken && form[i].place < 0)
            return std::nullopt;
        (form[i].is_value ? rate.second : rate.first) += is_taken ? 1 : 0;
    }
    return rate;
}

} // namespace

Call MakeCall(const Command& command, const Form& form, const Values& words) {
    Call call{&command, Values(Command::CountValues(command.pattern))};
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i].place < 0)
            continue;
        std::string& value = call.values[static_cast<std::size_t>(form[i].place)];
        value += (value.empty() ? "" : " ") + words[i];
    }
    return call;
}

bool Run(const Call& call) {
    if (call.command->traits & (kShows | kOwnLock))
        return call.command->run(call.values);
    ChangeLock lock;
    return lock.Acquire() && call.command->run(call.values);
}

std::optional<Call> FindCall(const Values& words) {
    std::optional<Call> call;
    std::optional<std::pair<std::size_t, std::size_t>> best;
    for (const Family& family : Families()) {
        for (const Command& command : family.commands) {
            if (command.run == nullptr)
                continue;
            for (const Form& form : Expand(command.pattern)) {
                const auto rate = Rate(form, words);
                if (!rate || (best && *rate <= *best))
                    continue;
                best = rate;
                call = MakeCall(command, form, words);
            }
        }
    }
    return call;
}

} // namespace shell
