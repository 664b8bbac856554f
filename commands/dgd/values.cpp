#include "commands/dgd/values.h"

#include "commands/arguments/arguments.h"
#include "commands/dgd/words.h"
#include "commands/vtysh/saved_file.h"
#include "front/helpers/text.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"

#include <algorithm>

template class detail::in_node<value::DGDRequest, void>;

namespace value {
namespace {

constexpr const char* kModem = "modem";
constexpr const char* kTextLimit = "63";
constexpr const char* kTextSymbols = ", symbols: [A-z][0-9]-";

bool Take(const std::string& word, bool is_good, std::string& parsed) {
    if (is_good)
        parsed = word;
    return is_good;
}

bool IsLong(const std::string& word, const char* letters) {
    long number = 0;
    return word.find_first_not_of(letters) == std::string::npos && ParseLong(word.c_str(), &number);
}

// The second words of the lines with one of these first words.
ShellWords ListSections(std::initializer_list<const char*> headers) {
    ShellWords words;
    const auto take = [&](const std::string& line) {
        const dgd::Words parts = dgd::SplitWords(line);
        if (parts.size() > 1 && std::find(headers.begin(), headers.end(), parts[0]) != headers.end())
            words.push_back(parts[1]);
        return true;
    };
    return vtysh::ReadSaved(vtysh::kDgdd, take, vtysh::Failure::kSilent) ? words : ShellWords();
}

} // namespace

bool ExistingNextHops::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsDgdText(word), parsed);
}

ShellWords ExistingNextHops::list() const {
    return ListSections({"next-hop", "dyn-next-hop"});
}

bool ExistingDgdRules::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsDgdText(word), parsed);
}

ShellWords ExistingDgdRules::list() const {
    return ListSections({"dgd-rule"});
}

bool DGDInterface::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsInterfaceName(word), parsed);
}

ShellWords DGDInterface::list() const {
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    ShellWords words;
    for (const std::string& name : corvanshell::get_int_list()) {
        corvanshell::InterfaceEntry entry;
        if (record.FindInterface(name, entry) && entry.address == "dhcp")
            words.push_back(name);
    }
    words.emplace_back(kModem);
    return words;
}

bool DGDRequest::parse(const std::string& word, std::string& parsed) const {
    const ShellWords words = list();
    return Take(word, std::find(words.begin(), words.end(), word) != words.end(), parsed);
}

ShellWords DGDRequest::list() const {
    return {"icmp", "tcp80", "tcp443"};
}

bool DgdName::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsDgdText(word), parsed);
}

std::string DgdName::sample() const {
    return std::string("DGD name length 1-") + kTextLimit + kTextSymbols;
}

bool DgdLogText::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsDgdText(word), parsed);
}

std::string DgdLogText::sample() const {
    return std::string("DGD log text: length 1-") + kTextLimit + kTextSymbols;
}

bool DgdNumber::parse(const std::string& word, std::string& parsed) const {
    return Take(word, IsLong(word, "0123456789"), parsed);
}

bool DgdSignedNumber::parse(const std::string& word, std::string& parsed) const {
    return Take(word, IsLong(word, "-0123456789"), parsed);
}

} // namespace value
