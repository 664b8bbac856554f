#pragma once

#include "front/probes/xml.h"
#include "platform/guards.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

// An appliance without DHCP server and relay. Commands are played into a transcript, which is compared with
// an expected one:
//
//     $ inet ifconfig eth1 address delete 10.8.0.1 255.255.255.0     the command, "< y" what is answered
//     refused                                                        it gave false
//     out ...  err ...  log 6 ...                                    the terminal, the log with its levels
//     run ...                                                        programs, in their order
//     set KEY = value, unset KEY                                     changes of the record
//     changed /etc/x                                                 changes of any other file
class CommandTest : public support::Appliance {
protected:
    using Call = std::function<bool()>;
    using Lines = std::map<std::string, std::string>;
    inline static const std::vector<std::string> kFolders = {"/etc", "/mnt", "/run"};

    CommandTest() {
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

    // Plays a call, with the answer `input` to its question. A `file` is shown when the call changed it.
    void Play(const std::string& title, const Call& call, const std::string& input = "",
              const std::string& file = "") {
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
            if (change == "changed " + file || change == "added " + file)
                Write("   ", support::ReadFile(file));
        }
        (void)support::RunShell("rm -rf /tmp/recorder/queue*");
    }

    // Plays a call, and then again, from the same record, with each of its programs failing in turn.
    // `outputs` are what the programs say when they don't.
    void PlayWithFailures(const std::string& title, const Call& call, const std::string& input = "",
                          std::map<std::string, std::string> outputs = {}) {
        const std::string record = support::ReadFile(path_list::local_settings);
        for (const auto& [program, output] : outputs)
            support::Queue(program, {.out = output});
        Play(title, call, input);
        const std::vector<std::string> commands = support::Commands();
        for (std::size_t failing = 0; failing < commands.size(); ++failing) {
            WriteRecord(record);
            std::map<std::string, std::string> left = outputs; // each is said once
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

    void ExpectTranscript(const std::string& name) {
        support::WriteFile("/tmp/transcript", transcript_.str());
        support::ExpectGolden("/tmp/transcript", "commands/" + name + ".txt");
    }

private:
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

    std::ostringstream transcript_;
};
