#include "shell/editor.h"

#include "shell/screen.h"
#include "shell/walk.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <histedit.h>
#include <string_view>

namespace shell {
namespace {

constexpr const char* kHistoryFile = "/var/lib/conf-shell/history";
constexpr int kHistorySize = 1000;

Editor& OwnerOf(EditLine* line) {
    void* owner = nullptr;
    el_get(line, EL_CLIENTDATA, &owner);
    return *static_cast<Editor*>(owner);
}

char* GivePrompt(EditLine* line) {
    return const_cast<char*>(OwnerOf(line).Prompt());
}

std::string_view TextBeforeCursor(EditLine* line) {
    const LineInfo* const info = el_line(line);
    return {info->buffer, static_cast<std::size_t>(info->cursor - info->buffer)};
}

// The editor counts characters where its lines have bytes.
int CountBetween(const char* from, const char* to) {
    return static_cast<int>(CountCharacters({from, static_cast<std::size_t>(to - from)}));
}

// Below the line, which is shown again behind it.
unsigned char Show(const std::string& text) {
    std::fprintf(stdout, "\n%s", text.c_str());
    std::fflush(stdout);
    return CC_REDISPLAY;
}

std::string CommonBegin(const ShellWords& words) {
    std::string begin = words.front();
    for (const std::string& word : words)
        begin.erase(std::mismatch(begin.begin(), begin.end(), word.begin(), word.end()).first, begin.end());
    // Whole characters: one that two words have in part is not common.
    const auto is_cut = [&](const std::string& word) {
        return begin.size() < word.size() && (static_cast<unsigned char>(word[begin.size()]) & 0xc0) == 0x80;
    };
    while (!begin.empty() && std::any_of(words.begin(), words.end(), is_cut))
        begin.pop_back();
    return begin;
}

// In columns, across.
std::string ListWords(const ShellWords& words) {
    std::size_t width = 0;
    for (const std::string& word : words)
        width = std::max(width, CountCharacters(word) + 2);
    std::string text;
    std::size_t column = 0;
    for (const std::string& word : words) {
        if (column > 0 && column + CountCharacters(word) > LineWidth()) {
            text += '\n';
            column = 0;
        }
        text += Printable(word) + std::string(width - CountCharacters(word), ' ');
        column += width;
    }
    return text + '\n';
}

// Where nothing may stand, it says which word has led there.
unsigned char ShowOffers(EditLine* line, const std::string& before) {
    const TreeNode& root = OwnerOf(line).Root();
    const std::string offers = FormatOffers(ListOffersAt(root, before));
    if (!offers.empty())
        return Show(offers);
    const Line split = SplitLine(before);
    if (split.is_comment)
        return Show("  the rest of the line is a comment\n");
    return Show(DescribeFault(before, split, Follow(root, split.Texts())));
}

unsigned char OnTab(EditLine* line, int) {
    const std::string before(TextBeforeCursor(line));
    const Completion completion = Complete(OwnerOf(line).Root(), before);
    if (completion.words.empty())
        return ShowOffers(line, before);
    const std::string typed = before.substr(completion.begin);
    const bool is_only = completion.words.size() == 1;
    const std::string text = CommonBegin(completion.words) + (is_only ? " " : "");
    if (text.size() <= typed.size())
        return Show(ListWords(completion.words));
    el_deletestr(line, static_cast<int>(CountCharacters(typed)));
    return el_insertstr(line, text.c_str()) == 0 ? CC_REFRESH : CC_REFRESH_BEEP;
}

unsigned char OnQuestionMark(EditLine* line, int) {
    const std::string before(TextBeforeCursor(line));
    const Line split = SplitLine(before);
    if (split.is_open || split.is_comment) {
        el_insertstr(line, "?");
        return CC_REFRESH;
    }
    return ShowOffers(line, before);
}

unsigned char OnInterrupt(EditLine* line, int) {
    const LineInfo* const info = el_line(line);
    const int behind = CountBetween(info->cursor, info->lastchar);
    const int whole = CountBetween(info->buffer, info->lastchar);
    el_cursor(line, behind);
    el_deletestr(line, whole);
    return Show("");
}

} // namespace

Editor::Editor(const TreeNode& root)
    : root_(root), file_(kHistoryFile), history_(history_init(), history_end), line_(nullptr, el_end) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    line_.reset(el_init("conf-shell", stdin, stdout, stderr));
    EditLine* const line = line_.get();
    HistEvent event;
    history(history_.get(), &event, H_SETSIZE, kHistorySize);
    history(history_.get(), &event, H_SETUNIQUE, 1);
    for (const std::string& old : file_.Load())
        history(history_.get(), &event, H_ENTER, old.c_str());

    el_set(line, EL_CLIENTDATA, this);
    el_set(line, EL_PROMPT, GivePrompt);
    el_set(line, EL_EDITOR, "emacs");
    el_set(line, EL_SIGNAL, 1);
    el_set(line, EL_HIST, history, history_.get());
    // The wide form keeps the literals as they are; the other one leaks copies of them.
    el_wset(line, EL_ADDFN, L"shell-complete", L"Complete the word", OnTab);
    el_wset(line, EL_ADDFN, L"shell-offers", L"Show what may follow", OnQuestionMark);
    el_wset(line, EL_ADDFN, L"shell-abandon", L"Abandon the line", OnInterrupt);
    el_set(line, EL_BIND, "^I", "shell-complete", nullptr);
    el_set(line, EL_BIND, "?", "shell-offers", nullptr);
    el_set(line, EL_BIND, "^C", "shell-abandon", nullptr);
    el_set(line, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    // Ctrl-C is a key while a line is typed, and a signal while a command runs.
    el_set(line, EL_SETTY, "-d", "-isig", nullptr);
}

Editor::~Editor() = default;

bool Editor::Read(const std::string& prompt, std::string& line) {
    prompt_ = prompt;
    int count = 0;
    const char* text = ReadHeld(&count);
    // An interrupt from elsewhere abandons the line, as the key does.
    while (text == nullptr && errno == EINTR) {
        std::puts("");
        text = ReadHeld(&count);
    }
    if (text == nullptr || count <= 0)
        return false;
    line.assign(text, static_cast<std::size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
    Remember(line);
    return true;
}

// The library takes a new size of the terminal in the midst of whatever it does, and writes beyond its screen
// when the line has no room there any more. It learns of the size in front of each line instead.
const char* Editor::ReadHeld(int* count) {
    sigset_t resizing;
    sigset_t previous;
    ::sigemptyset(&resizing);
    ::sigaddset(&resizing, SIGWINCH);
    ::pthread_sigmask(SIG_BLOCK, &resizing, &previous);
    el_resize(line_.get());
    errno = 0;
    const char* const text = el_gets(line_.get(), count);
    const int failure = errno;
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    errno = failure;
    return text;
}

void Editor::Remember(const std::string& line) {
    constexpr std::size_t kRemembered = 1024; // bytes: what is longer, nobody has typed
    if (line.find_first_not_of(" \t") == std::string::npos || line.size() > kRemembered)
        return;
    HistEvent event;
    history(history_.get(), &event, H_ENTER, line.c_str());
    file_.Append(line);
}

} // namespace shell
