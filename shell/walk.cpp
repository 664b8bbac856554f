#include "shell/walk.h"

#include "shell/quiet_list.h"
#include "shell/screen.h"
#include "shell/values.h"

#include <algorithm>

namespace shell {
namespace {

constexpr std::size_t kLabelWidth = 18;
constexpr std::size_t kHelpColumn = kLabelWidth + 4;
constexpr const char* kHelpWord = "help";
constexpr const char* kEndLabel = "<Enter>";

bool IsValue(const TreeNode& stage) {
    return stage.label().starts_with('<');
}

// What a stage has to offer of words that the text begins: "0xB8 (EF)", or a sentence that says why there are
// none.
ShellWords ListValues(const TreeNode& stage, const std::string& begin) {
    ShellWords words = IsValue(stage) ? ListQuietly([&] { return stage.completion(); }) : stage.completion();
    std::erase_if(words, [&](const std::string& word) { return !word.starts_with(begin); });
    return words;
}

// What of that can be typed: what the stage takes, otherwise what it takes in front of a remark.
ShellWords ListCompletions(const TreeNode& stage, const std::string& begin) {
    ShellWords words;
    for (const std::string& offered : ListValues(stage, begin)) {
        const std::string bare = offered.substr(0, offered.find(" ("));
        if (stage.match(offered))
            words.push_back(offered);
        else if (stage.match(bare))
            words.push_back(bare);
    }
    return words;
}

std::string Indent(std::size_t width) {
    return std::string(width, ' ');
}

// The words in lines below the help. A remark stays with its word: "0xB8 (EF)".
std::string WrapWords(const ShellWords& words) {
    constexpr char kHeld = '\xff'; // no byte of a text
    std::string joined;
    for (const std::string& word : words) {
        joined += (joined.empty() ? "" : " ") + word;
        if (const std::size_t remark = joined.rfind(" ("); remark != std::string::npos)
            joined[remark] = kHeld;
    }
    std::string wrapped = WrapBehind(kHelpColumn, Printable(joined));
    std::replace(wrapped.begin(), wrapped.end(), kHeld, ' ');
    return Indent(kHelpColumn) + wrapped + "\n";
}

// The last word of a line that is being typed.
struct Cursor {
    const TreeNode* node = nullptr; // whose stages may take it, null when there is none
    std::string begun;
    std::size_t place;
};

// A blank ends a word.
Cursor FindCursor(const TreeNode& root, std::string_view line) {
    const Line split = SplitLine(line);
    ShellWords words = split.Texts();
    Cursor cursor{.node = nullptr, .begun = "", .place = line.size()};
    if (split.is_comment)
        return cursor;
    if (!words.empty() && split.words.back().end == line.size()) {
        cursor.begun = words.back();
        cursor.place = split.words.back().begin;
        words.pop_back();
    }
    const Position position = Follow(root, words);
    if (position.taken == words.size())
        cursor.node = position.node;
    SetTypedWords(words);
    return cursor;
}

// The words that the text is short for, when there are several. An empty one is short for none.
std::vector<const TreeNode*> ListMeant(const TreeNode& node, const std::string& text) {
    std::vector<const TreeNode*> meant;
    for (const auto& stage : node.stages()) {
        if (!text.empty() && !IsValue(*stage) && stage->partial_match(text))
            meant.push_back(stage.get());
    }
    return meant.size() > 1 ? meant : std::vector<const TreeNode*>();
}

} // namespace

bool IsHelp(const TreeNode& root, const std::string& word) {
    const TreeNode* const stage = root.find_stage(word);
    return stage != nullptr && stage->label() == kHelpWord;
}

Position Follow(const TreeNode& root, const ShellWords& words) {
    Position position{&root, 0};
    if (!words.empty() && IsHelp(root, words[0]))
        position.taken = 1;
    while (position.taken < words.size()) {
        const TreeNode* const next = position.node->find_stage(words[position.taken]);
        if (next == nullptr)
            return position;
        position = {next, position.taken + 1};
    }
    return position;
}

std::vector<Offer> ListOffersAt(const TreeNode& root, std::string_view line) {
    const Cursor cursor = FindCursor(root, line);
    std::vector<Offer> offers;
    if (cursor.node == nullptr)
        return offers;
    std::vector<Offer> others; // values that what is begun may still become
    for (const auto& stage : cursor.node->stages()) {
        ShellWords words = IsValue(*stage) ? ListValues(*stage, cursor.begun) : ShellWords();
        const bool is_meant = IsValue(*stage)
                                  ? cursor.begun.empty() || stage->match(cursor.begun) || !words.empty()
                                  : stage->partial_match(cursor.begun);
        if (is_meant || IsValue(*stage))
            (is_meant ? offers : others).push_back({stage->label(), stage->help(), std::move(words)});
    }
    if (offers.empty())
        offers = std::move(others);
    if (cursor.begun.empty() && cursor.node->ends_command())
        offers.push_back({kEndLabel, "runs the command", {}});
    return offers;
}

std::string FormatOffers(const std::vector<Offer>& offers) {
    std::string text;
    for (const Offer& offer : offers) {
        const std::size_t columns = std::max(CountCharacters(offer.label), kLabelWidth);
        text += "  " + offer.label + Indent(columns - CountCharacters(offer.label) + 2) +
                WrapBehind(columns + 4, offer.help) + "\n";
        if (!offer.words.empty())
            text += WrapWords(offer.words);
    }
    return text;
}

Completion Complete(const TreeNode& root, std::string_view line) {
    const Cursor cursor = FindCursor(root, line);
    Completion completion{cursor.place, {}};
    if (cursor.node == nullptr)
        return completion;
    for (const auto& stage : cursor.node->stages()) {
        for (const std::string& word : ListCompletions(*stage, cursor.begun))
            completion.words.push_back(Quote(word));
    }
    std::sort(completion.words.begin(), completion.words.end());
    completion.words.erase(std::unique(completion.words.begin(), completion.words.end()),
                           completion.words.end());
    return completion;
}

std::string DescribeFault(std::string_view line, const Line& words, const Position& position) {
    const bool is_incomplete = position.taken == words.words.size();
    const TypedWord wrong =
        is_incomplete ? TypedWord{"", line.size(), line.size() + 1} : words.words[position.taken];
    const std::vector<const TreeNode*> meant =
        is_incomplete ? std::vector<const TreeNode*>() : ListMeant(*position.node, wrong.text);
    std::vector<Offer> offers;
    for (const auto& stage : position.node->stages()) {
        if (meant.empty() || std::find(meant.begin(), meant.end(), stage.get()) != meant.end())
            offers.push_back({stage->label(), stage->help(), {}});
    }
    const char* const what = is_incomplete    ? "incomplete command, behind it may stand:"
                             : !meant.empty() ? "ambiguous word, it is short for:"
                             : offers.empty() ? "the command has ended before this word"
                                              : "wrong word, in its place may stand:";
    const std::size_t width = std::max<std::size_t>(CountCharacters(line.substr(0, wrong.end)), 1);
    const std::size_t indent = CountCharacters(line.substr(0, wrong.begin));
    return Printable(line) + "\n" + Indent(indent) +
           std::string(std::max<std::size_t>(width - indent, 1), '^') + "\n" + what + "\n" +
           FormatOffers(offers);
}

} // namespace shell
