#include "tests/support/command_test.h"

#include "front/helpers/xml.h"
#include "shell/call.h"
#include "shell/line.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <unistd.h>

namespace {

using Lines = std::vector<std::string>;

const Lines kFolders = {"/etc", "/mnt", "/run"};

Lines SplitText(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

void AddLines(const std::string& mark, const std::string& text, Lines& told) {
    for (const std::string& line : SplitText(text))
        told.push_back(mark + ' ' + line);
}

// The lines that only one of the two has, in their order: "- " of the one before, "+ " of the one after.
Lines Difference(const Lines& before, const Lines& after) {
    std::vector<std::vector<std::size_t>> common(before.size() + 1,
                                                 std::vector<std::size_t>(after.size() + 1));
    for (std::size_t i = before.size(); i-- > 0;) {
        for (std::size_t j = after.size(); j-- > 0;)
            common[i][j] = before[i] == after[j] ? common[i + 1][j + 1] + 1
                                                 : std::max(common[i + 1][j], common[i][j + 1]);
    }
    Lines difference;
    for (std::size_t i = 0, j = 0; i < before.size() || j < after.size();) {
        if (i < before.size() && j < after.size() && before[i] == after[j]) {
            ++i;
            ++j;
        } else if (j == after.size() || (i < before.size() && common[i + 1][j] >= common[i][j + 1])) {
            difference.push_back("- " + before[i++]);
        } else {
            difference.push_back("+ " + after[j++]);
        }
    }
    return difference;
}

using Fields = std::map<std::string, std::string>;

// The record's lines by key.
Fields ReadFields() {
    Fields fields;
    for (const std::string& line : SplitText(support::ReadFile(path_list::local_settings))) {
        const std::size_t value = line.find_first_not_of('\t', line.find('\t'));
        fields[line.substr(0, line.find('\t'))] = value != std::string::npos ? line.substr(value) : "";
    }
    return fields;
}

void TellFields(const Fields& before, const Fields& after, Lines& told) {
    for (const auto& [key, value] : after) {
        if (!before.contains(key) || before.at(key) != value)
            told.push_back("set " + key + " = " + value);
    }
    for (const auto& [key, value] : before) {
        if (!after.contains(key))
            told.push_back("unset " + key);
    }
}

std::function<bool()> FindAction(const std::string& line) {
    const std::optional<shell::Call> call = shell::FindCall(shell::SplitLine(line).Texts());
    if (call)
        return [call] { return shell::Run(*call); };
    ADD_FAILURE() << line << ": no such command";
    return [] { return false; };
}

} // namespace

CommandTest::CommandTest() {
    setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    InitXml();
    for (const char* unit : {"dhcp-server", "dhcp-relay"})
        (void)unlink(SettingsFile(unit).c_str()); // the samples
}

CommandTest::~CommandTest() {
    CleanupXml();
}

std::string CommandTest::SettingsFile(const std::string& unit) {
    return "/mnt/main/etc/settings/" + unit + ".xml";
}

void CommandTest::WriteProtected(const std::string& path, const std::string& text) {
    support::WriteFile(path, text);
    ASSERT_TRUE(corvanshell::UpdateGuardFile(path_list::settings_guard.c_str(), 1, path.c_str(), nullptr));
}

void CommandTest::WriteRecord(const std::string& text) {
    WriteProtected(path_list::local_settings, text);
}

void CommandTest::JoinCluster(int state) {
    support::WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
    support::WriteFile("/var/spool/corvan/failoverstat", "state\n" + std::to_string(state) + "\n");
}

void CommandTest::Type(std::initializer_list<std::string> lines) {
    for (std::string line : lines) {
        const bool failing = line.starts_with("! ");
        line.erase(0, failing ? 2 : 0);
        const std::size_t typed = std::min(line.find(" < "), line.size());
        const std::string input = typed < line.size() ? line.substr(typed + 3) + '\n' : "";
        line.resize(typed);
        if (failing)
            PlayWithFailures(line, FindAction(line), input);
        else
            Play(line, FindAction(line), input);
    }
}

void CommandTest::Play(const std::string& title, const Call& call, const std::string& input) {
    QueueAnswers({});
    Tell(title, Perform(call, input));
}

void CommandTest::Watch(const std::string& mark, const Text& text) {
    watched_.emplace_back(mark, text);
}

void CommandTest::ExpectTranscript(const std::string& name) {
    support::WriteFile("/tmp/transcript", transcript_);
    support::ExpectGolden("/tmp/transcript", "commands/" + name + ".txt");
}

void CommandTest::Tell(const std::string& title, const Lines& told) {
    transcript_ += "$ " + title + '\n';
    for (const std::string& line : told)
        transcript_ += line + '\n';
}

// The commands that came before the failing one answer as ever.
void CommandTest::QueueAnswers(const std::vector<std::string>& failing) {
    std::map<std::string, Lines> left = answers_;
    for (std::size_t i = 0; i < failing.size(); ++i) {
        const std::string program = failing[i].substr(0, failing[i].find(' '));
        const bool fails = i + 1 == failing.size();
        Lines& texts = left[program];
        support::Queue(program,
                       {.out = fails || texts.empty() ? "" : texts.front(), .status = fails ? 7 : 0});
        if (!fails && !texts.empty())
            texts.erase(texts.begin());
    }
    for (const auto& [program, texts] : left) {
        for (const std::string& text : texts)
            support::Queue(program, {.out = text});
    }
}

void CommandTest::PlayWithFailures(const std::string& title, const Call& call, const std::string& input) {
    const std::string record = support::ReadFile(path_list::local_settings);
    QueueAnswers({});
    const Lines good = Perform(call, input);
    Tell(title, good);
    const std::vector<std::string> commands = support::Commands();
    for (std::size_t failing = 0; failing < commands.size(); ++failing) {
        WriteRecord(record);
        QueueAnswers({commands.begin(), commands.begin() + static_cast<long>(failing) + 1});
        Tell(title + "   # " + commands[failing] + " fails", Difference(good, Perform(call, input)));
    }
    WriteRecord(record);
}

// What came of the call, in the transcript's lines.
CommandTest::Lines CommandTest::Perform(const Call& call, const std::string& input) {
    Lines told;
    AddLines("<", input, told);
    const Fields fields = ReadFields();
    std::vector<std::string> texts;
    for (const auto& [mark, text] : watched_)
        texts.push_back(text());
    const support::Snapshot files = support::TakeSnapshot(kFolders);
    support::ForgetCommands();
    (void)TakeLog();
    bool done = false;
    const support::Output output = support::Capture([&] { done = call(); }, input);
    if (!done)
        told.emplace_back("refused");
    AddLines("out", output.out, told);
    AddLines("err", output.err, told);
    for (const support::LogLine& line : TakeLog())
        AddLines("log " + std::to_string(line.level), line.text, told);
    for (const std::string& command : support::Commands())
        AddLines("run", command, told);
    TellFields(fields, ReadFields(), told);
    TellFiles(files, told);
    for (std::size_t i = 0; i < watched_.size(); ++i) {
        for (const std::string& line : Difference(SplitText(texts[i]), SplitText(watched_[i].second())))
            told.push_back(watched_[i].first + ' ' + line);
    }
    (void)support::RunShell("rm -rf /tmp/recorder/queue*");
    return told;
}

void CommandTest::TellFiles(const support::Snapshot& before, Lines& told) const {
    for (const std::string& change : support::Changes(before, support::TakeSnapshot(kFolders))) {
        if (!change.ends_with("/local.conf") && !change.ends_with("/settings.crg"))
            told.push_back(change);
        if (change == "changed " + shown_file_ || change == "added " + shown_file_)
            AddLines("   ", support::ReadFile(shown_file_), told);
    }
}
