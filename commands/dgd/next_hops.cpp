#include "commands/dgd/next_hops.h"

#include "commands/dgd/words.h"

#include <algorithm>
#include <functional>

namespace nexthop {
namespace {

using dgd::SplitWords;
using dgd::Words;

constexpr const char* kNone = "NA";
constexpr const char* kNever = "never";
constexpr const char* kModemMark = "(usb-modem)";
constexpr std::size_t kModeWidth = 10;
constexpr std::size_t kTypeWidth = 12;
constexpr std::size_t kTestWidth = 27;
constexpr std::size_t kGatewayWidth = 22;
constexpr std::size_t kRateWidth = 27;
constexpr std::size_t kStateWidth = 8;

std::string Column(const std::string& text, std::size_t width) {
    return text + std::string(text.size() < width ? width - text.size() : 1, ' ');
}

const std::string& Or(const std::string& text, const std::string& otherwise) {
    return text.empty() ? otherwise : text;
}

// The words behind the label, joined; false when the line has another label.
bool Behind(const std::string& line, const char* label, std::string& rest) {
    const Words words = SplitWords(line);
    const Words beginning = SplitWords(label);
    if (words.size() < beginning.size() || !std::equal(beginning.begin(), beginning.end(), words.begin()))
        return false;
    rest = dgd::JoinWords(words, beginning.size());
    return true;
}

std::string FirstWord(const std::string& text) {
    return text.substr(0, text.find(' '));
}

std::string StateName(const std::string& word) {
    return word == "up" ? "Up" : word == "down" ? "Down" : kNone;
}

using NextHops = std::vector<std::unique_ptr<NextHop>>;

// Cuts the lines into blocks by their first lines, and has each block parsed.
NextHops ParseBlocks(const Lines& lines, const std::function<std::unique_ptr<NextHop>(const Words&)>& make) {
    NextHops found;
    Lines block;
    const auto end_block = [&] {
        if (!found.empty())
            found.back()->Parse(block);
        block.clear();
    };
    for (const std::string& line : lines) {
        if (auto next_hop = make(SplitWords(line))) {
            end_block();
            found.push_back(std::move(next_hop));
        } else {
            block.push_back(line);
        }
    }
    end_block();
    return found;
}

std::unique_ptr<NextHop> Make(bool is_dynamic, const std::string& name) {
    if (is_dynamic)
        return std::make_unique<DynamicNextHop>(name);
    return std::make_unique<StaticNextHop>(name);
}

// A line of the configuration, spelled as the daemon shows it.
std::string ShownLine(const std::string& line) {
    constexpr struct {
        const char* configured;
        const char* shown;
    } labels[] = {
        {"address", "Next hop IP address: "},  {"interface modem", "Next hop interface: modem (usb-modem)"},
        {"interface", "Next hop interface: "}, {"test-address", "Tested IP address: "},
        {"check-type", "Check type "},         {"no check", "Check type no check"}};
    std::string rest;
    for (const auto& [configured, shown] : labels) {
        if (Behind(line, configured, rest))
            return shown + rest;
    }
    return "";
}

} // namespace

TestState& NextHop::Test() {
    return tests_.empty() ? tests_.emplace_back() : tests_.back();
}

void NextHop::ParseCommon(const std::string& line) {
    std::string rest;
    if (Behind(line, "Next hop IP address:", rest))
        gateway_ = FirstWord(rest) == "not" ? "" : FirstWord(rest);
    else if (Behind(line, "Tested IP address:", rest))
        tests_.emplace_back().test_address = Or(FirstWord(rest), kNone);
    else if (Behind(line, "Check type", rest))
        check_type_ = rest;
    else if (Behind(line, "Current state:", rest))
        Test().state = StateName(FirstWord(rest));
    else if (Behind(line, "Successful checks (since state change):", rest))
        Test().success_count = rest;
    else if (Behind(line, "Failed checks (since state change):", rest))
        Test().failed_count = rest;
    else if (Behind(line, "State last changed:", rest))
        Test().last_change = rest;
}

bool NextHop::IsChecked() const {
    return check_type_.find("not checked") == std::string::npos &&
           check_type_.find("no check") == std::string::npos;
}

bool NextHop::HasCheckOf(const NewNextHop& other) const {
    return other.check == "no-check" ? !IsChecked() : FirstWord(check_type_) == other.type;
}

bool NextHop::HasTestAddress(const std::string& address) const {
    return std::any_of(tests_.begin(), tests_.end(),
                       [&](const TestState& test) { return test.test_address == address; });
}

// Two rows for each test address.
std::string NextHop::FormatRows(const char* mode, const std::string& interface_text) const {
    std::string text = name_ + "\n";
    const std::vector<TestState> none(1);
    for (const TestState& test : tests_.empty() ? none : tests_) {
        const std::string rate =
            IsChecked() ? Or(test.success_count, "0") + " / " + Or(test.failed_count, "0") : "0 / 0";
        text += Column(mode, kModeWidth) + Column(Or(check_type_, kNone), kTypeWidth) +
                Column(test.test_address, kTestWidth) + interface_text + "\n" +
                Column(Or(gateway_, kNone), kGatewayWidth) + Column(rate, kRateWidth) +
                Column(Or(test.state, kNone), kStateWidth) + Or(test.last_change, kNever) + "\n";
    }
    return text;
}

std::string StaticNextHop::Format() const {
    return FormatRows("Static", "");
}

void StaticNextHop::Parse(const Lines& lines) {
    for (const std::string& line : lines)
        ParseCommon(line);
}

std::string DynamicNextHop::Format() const {
    return FormatRows("Dynamic", Or(interface_, kNone) + " (" + Or(global_state_, kNone) + ")");
}

void DynamicNextHop::Parse(const Lines& lines) {
    for (const std::string& line : lines) {
        ParseCommon(line);
        std::string rest;
        if (Behind(line, "Next hop interface:", rest)) {
            interface_ = rest.starts_with("not connected") ? kNone : FirstWord(rest);
            is_modem_ = rest.ends_with(kModemMark);
        } else if (Behind(line, "Current global state:", rest)) {
            global_state_ = StateName(FirstWord(rest));
        }
    }
}

NextHops ParseShown(const Lines& lines) {
    return ParseBlocks(lines, [](const Words& words) -> std::unique_ptr<NextHop> {
        if (words.size() < 4 || (words[0] != "Static" && words[0] != "Dynamic") || words[1] != "next" ||
            words[2] != "hop")
            return nullptr;
        return Make(words[0] == "Dynamic", words[3]);
    });
}

NextHops ParseConfigured(const Lines& lines) {
    Lines shown;
    bool inside = false;
    for (const std::string& line : lines) {
        const Words words = SplitWords(line);
        const bool is_dynamic = !words.empty() && words[0] == "dyn-next-hop";
        if (words.size() == 2 && (is_dynamic || words[0] == "next-hop")) {
            shown.push_back((is_dynamic ? "Dynamic next hop " : "Static next hop ") + words[1]);
            inside = true;
        } else if (!words.empty() && words[0] == "!") {
            inside = false;
        } else if (inside) {
            shown.push_back(ShownLine(line));
        }
    }
    return ParseShown(shown);
}

} // namespace nexthop
