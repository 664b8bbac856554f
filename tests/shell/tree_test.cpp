#include "shell/pattern.h"
#include "shell/slots.h"
#include "shell/tree.h"
#include "shell/walk.h"
#include "tests/support/appliance.h"

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sstream>

namespace {

using shell::Command;
using shell::Family;
using shell::Token;

class TreeTest : public support::Appliance {};

// One of these is good for each value. Some take a number for a name, so names go first.
constexpr const char* kSamples[] = {
    "some-name", "1", "1100", "10.0.0.1", "255.255.255.0", "00:11:22:33:44:55", "31.12.2026-23:59:59", "EF",
    "icmp", "slow", "stable", "layer2", "broadcast", "none",
    // Options of the DHCP daemon.
    "ip-forwarding", "boot-size", "default-ip-ttl", "arp-cache-timeout", "log-servers"};

std::string SampleOf(const Token& token) {
    if (!token.is_value)
        return token.text;
    const std::unique_ptr<TreeNode> stage = shell::MakeStage(token.text);
    for (const char* sample : kSamples) {
        if (stage->match(sample))
            return sample;
    }
    ADD_FAILURE() << token.text << " takes none of the samples";
    return "";
}

ShellWords SampleOf(const shell::Form& form) {
    ShellWords words;
    for (const Token& token : form)
        words.push_back(SampleOf(token));
    return words;
}

void ForEachForm(const std::function<void(const Command& command, const shell::Form& form)>& look) {
    for (const Family& family : shell::Families()) {
        for (const Command& command : family.commands) {
            for (const shell::Form& form : shell::Expand(command.pattern))
                look(command, form);
        }
    }
}

// The places of the tree where a command ends, by the labels of the way there. All have something to say.
void ListEnds(const TreeNode& node, const std::string& way, std::map<std::string, const TreeNode*>& ends) {
    for (const auto& stage : node.stages()) {
        const std::string place = way + (way.empty() ? "" : " ") + stage->label();
        EXPECT_FALSE(stage->label().empty() || stage->help().empty()) << place;
        if (stage->ends_command())
            ends.emplace(place, stage.get());
        ListEnds(*stage, place, ends);
    }
}

TEST_F(TreeTest, EveryModeHasItsCommandsAndNoneHidesAnother) {
    const struct {
        const char* name;
        int number;
        unsigned foreign; // the trait of commands that it doesn't have
    } modes[] = {{"single", 0, shell::kInCluster}, {"cluster", 1, shell::kInSingle}};
    for (const auto& mode : modes) {
        SCOPED_TRACE(mode.name);
        Node root;
        shell::BuildTree(root, mode.number);
        std::map<std::string, const TreeNode*> ends;
        ListEnds(root, "", ends);
        std::map<std::string, const Command*> owners;
        ForEachForm([&](const Command& command, const shell::Form& form) {
            if (command.run == nullptr || (command.traits & mode.foreign))
                return;
            std::string place;
            for (const Token& token : form)
                place += (place.empty() ? "" : " ") + token.text;
            EXPECT_EQ(owners.emplace(place, &command).first->second, &command) << place;
            // "help" begins at the root again.
            EXPECT_TRUE(form[0].text == "help" || shell::Follow(root, SampleOf(form)).node == ends[place])
                << place << " typed as " << ::testing::PrintToString(SampleOf(form));
        });
        for (const auto& [place, node] : ends)
            EXPECT_TRUE(owners.contains(place)) << place << " is no command of this mode";
    }
}

// A heading that another row replaces would go stale.
TEST_F(TreeTest, EveryHeadingIsSeen) {
    Node root;
    shell::BuildTree(root, 1);
    std::map<std::string, bool> seen;
    ForEachForm([&](const Command& command, const shell::Form& form) {
        if (command.run == nullptr)
            seen[command.pattern] |= shell::Follow(root, SampleOf(form)).node->help() == command.help;
    });
    for (const auto& [heading, is_seen] : seen)
        EXPECT_TRUE(is_seen) << heading;
}

// What it holds would be gone in the midst of it.
TEST_F(TreeTest, ACommandOutlivesItsTree) {
    Node root;
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> is_there = held;
    root.add(std::make_unique<Node>()).set_action([&root, is_there, held = std::move(held)](const auto&) {
        for (int i = 0; i < 2; ++i) {
            root.clean();
            root.add(std::make_unique<Node>());
        }
        return !is_there.expired();
    });
    ShellArguments none;
    EXPECT_TRUE(root.parse_tokens({"word"}, 0, none));
    root.drop_cleaned();
    EXPECT_TRUE(is_there.expired());
}

// A row could have another one's action.
TEST_F(TreeTest, EveryCommandIsPlayedInASession) {
    std::vector<ShellWords> lines;
    for (const auto& file : std::filesystem::directory_iterator(SOURCE_FOLDER "/tests/golden/shell")) {
        std::istringstream text(support::ReadFile(file.path()));
        for (std::string line; std::getline(text, line);) {
            if (line.starts_with("$ "))
                lines.push_back(shell::SplitLine(line.substr(2)).Texts());
        }
    }
    std::map<std::string, bool> played{{"help [<text>]", true}};
    for (const int mode : {0, 1}) {
        Node root;
        shell::BuildTree(root, mode);
        std::set<const TreeNode*> ends;
        for (const ShellWords& line : lines)
            ends.insert(shell::Follow(root, line).node);
        ForEachForm([&](const Command& command, const shell::Form& form) {
            if (command.run != nullptr)
                played[command.pattern] |= ends.contains(shell::Follow(root, SampleOf(form)).node);
        });
    }
    for (const auto& [line, is_played] : played)
        EXPECT_TRUE(is_played) << line;
}

// The introduction stands in the file alone.
TEST_F(TreeTest, DocumentHasTheCommands) {
    const std::string document = support::ReadFile(SOURCE_FOLDER "/docs/commands.md");
    std::string text = document.substr(0, document.find("\n## "));
    for (const Family& family : shell::Families()) {
        text += std::string("\n## ") + family.name + "\n\n| Command | What it does |\n|---|---|\n";
        for (const Command& command : family.commands) {
            if (command.run == nullptr)
                continue;
            std::string line;
            for (const char* letter = command.pattern; *letter != '\0'; ++letter)
                line += (*letter == '|' ? "\\" : "") + std::string(1, *letter);
            const char* const mode = command.traits & shell::kInCluster  ? "; in cluster mode only"
                                     : command.traits & shell::kInSingle ? "; in single mode only"
                                                                         : "";
            text += "| `" + line + "` | " + command.help + mode + " |\n";
        }
    }
    support::WriteFile("/tmp/commands.md", text);
    support::ExpectGolden("/tmp/commands.md", "../../docs/commands.md");
}

} // namespace
