#pragma once

#include "front/helpers/xml.h"
#include "platform/guards.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

// An appliance without DHCP server and relay. Commands are played into a transcript, which is compared with
// an expected one:
//
//     $ inet ifconfig eth1 address delete 10.8.0.1 255.255.255.0     the command, "< y" what is typed then
//     refused                                                        it gave false
//     out ...  err ...  log 6 ...                                    the terminal, the log with its levels
//     run ...                                                        programs, in their order
//     set KEY = value, unset KEY                                     changes of the record
//     changed /etc/x                                                 changes of any other file
class CommandTest : public support::Appliance {
protected:
    using Call = std::function<bool()>;
    using Lines = std::map<std::string, std::string>;
    using Words = std::vector<std::string>;
    // A command by its line, whose "*" takes a word for the action, and "..." all that are left.
    struct Command {
        const char* line;
        std::function<bool(const Words&)> action;
    };
    inline static const std::vector<std::string> kFolders = {"/etc", "/mnt", "/run"};

    explicit CommandTest(std::vector<Command> commands = {}) : commands_(std::move(commands)) {
        setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
        InitXml();
        for (const char* unit : {"dhcp-server", "dhcp-relay"})
            (void)unlink(SettingsFile(unit).c_str()); // the samples
    }
    ~CommandTest() override { CleanupXml(); }

    static std::string SettingsFile(const std::string& unit) {
        return "/mnt/main/etc/settings/" + unit + ".xml";
    }
    static void WriteProtected(const std::string& path, const std::string& text) {
        support::WriteFile(path, text);
        ASSERT_TRUE(
            corvanshell::UpdateGuardFile(path_list::settings_guard.c_str(), 1, path.c_str(), nullptr));
    }
    static void WriteRecord(const std::string& text) { WriteProtected(path_list::local_settings, text); }

    static void JoinCluster(int state) { // 2 active, 1 passive
        support::WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
        support::WriteFile("/var/spool/corvan/failoverstat", "state\n" + std::to_string(state) + "\n");
    }

    template <typename... Texts>
    static auto Bind(bool (*action)(Texts...)) {
        return [action]([[maybe_unused]] const Words& words) {
            return [&]<std::size_t... i>(std::index_sequence<i...>) {
                return action(words.at(i)...);
            }
            (std::index_sequence_for<Texts...>());
        };
    }

    // Plays commands by their lines. A word with blanks stands in quotes, what is typed behind " < ", a
    // remark behind " # ". A command behind "! " is played again, from the same record, with each of its
    // programs failing in turn.
    void Type(std::initializer_list<std::string> lines) {
        for (std::string line : lines) {
            const bool failing = line.starts_with("! ");
            line.erase(0, failing ? 2 : 0);
            const std::size_t typed = std::min(line.find(" < "), line.size());
            const std::string input = typed < line.size() ? line.substr(typed + 3) + '\n' : "";
            line.resize(typed);
            if (failing)
                PlayWithFailures(line, Find(line), input);
            else
                PlayAnswered(line, Find(line), input);
        }
    }

    // Plays a call that has no line.
    void Play(const std::string& title, const Call& call, const std::string& input = "") {
        transcript_ << "$ " << title << '\n';
        Write("<", input);
        const Lines lines = RecordLines();
        const support::Snapshot before = support::TakeSnapshot(kFolders);
        support::ForgetCommands();
        (void)TakeLog();
        bool done = false;
        const support::Output output = support::Capture([&] { done = call(); }, input);
        transcript_ << (done ? "" : "refused\n");
        Write("out", output.out);
        Write("err", output.err);
        for (const support::LogLine& line : TakeLog())
            Write("log " + std::to_string(line.level), line.text);
        for (const std::string& command : support::Commands())
            Write("run", command);
        WriteDifference(lines, RecordLines());
        for (const std::string& change : support::Changes(before, support::TakeSnapshot(kFolders))) {
            if (!change.ends_with("/local.conf") && !change.ends_with("/settings.crg"))
                transcript_ << change << '\n';
            if (change == "changed " + shown_file_ || change == "added " + shown_file_)
                Write("   ", support::ReadFile(shown_file_));
        }
        (void)support::RunShell("rm -rf /tmp/recorder/queue*");
    }

    void ExpectTranscript(const std::string& name) {
        support::WriteFile("/tmp/transcript", transcript_.str());
        support::ExpectGolden("/tmp/transcript", "commands/" + name + ".txt");
    }

    std::map<std::string, std::string>
        answers_;            // what programs say, once for each command, when they don't fail
    std::string shown_file_; // is shown whole when a call changes it

private:
    static Words Split(const std::string& line) {
        std::istringstream stream(line);
        Words words;
        for (std::string word; stream >> std::quoted(word) && word != "#";)
            words.push_back(word);
        return words;
    }
    static bool Match(const Words& pattern, const Words& words, Words& arguments) {
        for (std::size_t i = 0; i < pattern.size(); ++i) {
            if (pattern[i] == "...") {
                arguments.insert(arguments.end(), words.begin() + static_cast<long>(i), words.end());
                return true;
            }
            if (i == words.size() || (pattern[i] != "*" && pattern[i] != words[i]))
                return false;
            if (pattern[i] == "*")
                arguments.push_back(words[i]);
        }
        return pattern.size() == words.size();
    }
    Call Find(const std::string& line) const {
        for (const Command& command : commands_) {
            Words arguments;
            if (Match(Split(command.line), Split(line), arguments))
                return [action = command.action, arguments] { return action(arguments); };
        }
        ADD_FAILURE() << line << ": no such command";
        return [] { return false; };
    }

    void PlayAnswered(const std::string& title, const Call& call, const std::string& input) {
        for (const auto& [program, output] : answers_)
            support::Queue(program, {.out = output});
        Play(title, call, input);
    }
    void PlayWithFailures(const std::string& title, const Call& call, const std::string& input) {
        const std::string record = support::ReadFile(path_list::local_settings);
        PlayAnswered(title, call, input);
        const std::vector<std::string> commands = support::Commands();
        for (std::size_t failing = 0; failing < commands.size(); ++failing) {
            WriteRecord(record);
            std::map<std::string, std::string> left = answers_;
            for (std::size_t i = 0; i <= failing; ++i) {
                const std::string program = commands[i].substr(0, commands[i].find(' '));
                support::Queue(program, {.out = i < failing ? std::exchange(left[program], "") : "",
                                         .status = i < failing ? 0 : 7});
            }
            for (const auto& [program, output] : left)
                support::Queue(program, {.out = output});
            Play(title + "   # " + commands[failing] + " fails", call, input);
        }
        WriteRecord(record);
    }

    // The record's lines by key.
    static Lines RecordLines() {
        Lines lines;
        std::istringstream text(support::ReadFile(path_list::local_settings));
        for (std::string line; std::getline(text, line);) {
            const std::size_t value = line.find_first_not_of('\t', line.find('\t'));
            lines[line.substr(0, line.find('\t'))] = value != std::string::npos ? line.substr(value) : "";
        }
        return lines;
    }
    void Write(const std::string& mark, const std::string& text) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            transcript_ << mark << ' ' << line << '\n';
    }
    void WriteDifference(const Lines& before, const Lines& after) {
        for (const auto& [key, value] : after) {
            if (!before.contains(key) || before.at(key) != value)
                transcript_ << "set " << key << " = " << value << '\n';
        }
        for (const auto& [key, value] : before)
            transcript_ << (after.contains(key) ? "" : "unset " + key + "\n");
    }

    std::vector<Command> commands_; // the first that fits is taken
    std::ostringstream transcript_;
};
