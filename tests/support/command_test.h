#pragma once

#include "platform/guards.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

// An appliance without DHCP server and relay, and commands that are played into a transcript, which is
// compared with an expected one:
//
//     $ inet ifconfig eth1 address delete 10.8.0.1 255.255.255.0     the command, "< y" what is typed then
//     refused                                                        it gave false
//     out ...  err ...  log 6 ...                                    the terminal, the log with its levels
//     run ...                                                        programs, in their order
//     set KEY = value, unset KEY                                     changes of the record
//     zebra + line, zebra - line                                     changes of a watched text
//     changed /etc/x                                                 changes of any other file
//
// A test types lines and compares what came of them:
//
//     Type({"inet ifconfig eth1 mtu 1400", "! inet ifconfig eth1 down < y"});
//     ExpectTranscript("interfaces/link");      // tests/golden/commands/interfaces/link.txt
//
// The shell's own table says which action a line runs, here, in the test's process and with whatever values,
// so that the action's own refusals can be played; a line that the shell doesn't have fails the test. What
// has no line, or more values than the shell takes, is a call: Play("bond eth1 as a slave", [] { ... }).
//
// Programs are recorders (support::Record). One that has to say something is given answers_, in the order of
// its calls within a command; vtysh too, where a test has it recorded. What a program keeps, such as the
// running configuration of the working stand-in, is watched: Watch("zebra", [] { return Show("show
// running-config"); }).
class CommandTest : public support::Appliance {
protected:
    using Call = std::function<bool()>;
    using Lines = std::vector<std::string>;
    using Text = std::function<std::string()>;

    CommandTest();
    ~CommandTest() override;

    static std::string SettingsFile(const std::string& unit);
    static void WriteProtected(const std::string& path, const std::string& text);
    static void WriteRecord(const std::string& text);
    static void JoinCluster(int state); // 2 active, 1 passive

    // Plays commands by their lines, typed as in the shell. What is typed then stands behind " < ", a remark
    // behind " # ". A command behind "! " is played again, from the same record, with each of its programs
    // failing in turn; of these runs the transcript has what differs from the good one: "- " and a line that
    // is missing, "+ " and one that is new.
    void Type(std::initializer_list<std::string> lines);
    // Plays a call that has no line.
    void Play(const std::string& title, const Call& call, const std::string& input = "");
    // From now on the transcript tells the lines of the text that a command adds or takes away.
    void Watch(const std::string& mark, const Text& text);

    // Compares with tests/golden/commands/<name>.txt.
    void ExpectTranscript(const std::string& name);

    std::map<std::string, Lines> answers_; // what programs say for each command, when they don't fail
    std::string shown_file_;               // is shown whole when a call changes it

private:
    void Tell(const std::string& title, const Lines& told);
    void QueueAnswers(const std::vector<std::string>& failing);
    void PlayWithFailures(const std::string& title, const Call& call, const std::string& input);
    Lines Perform(const Call& call, const std::string& input);
    void TellFiles(const support::Snapshot& before, Lines& told) const;

    std::vector<std::pair<std::string, Text>> watched_;
    std::string transcript_;
};
