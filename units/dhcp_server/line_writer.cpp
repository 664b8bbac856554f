#include "units/dhcp_server/line_writer.h"

#include "platform/messages.h"
#include "units/dhcp_server/model/paths.h"

#include <cerrno>
#include <cstring>
#include <string_view>

namespace settings::dhcp_server {
namespace {

// Whether the daemon reads the text as a part of one statement (dhcpd.conf(5)): it ends none, begins no block
// and no comment, and leaves no quoted text open. A quoted text ends with its line.
bool StaysOneValue(std::string_view text) {
    const auto is_mark = [](char letter) {
        return letter == ';' || letter == '{' || letter == '}' || letter == '#';
    };
    bool is_quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char letter = text[i];
        if (letter == '"')
            is_quoted = !is_quoted;
        else if (is_quoted && letter == '\\')
            ++i;
        else if (is_quoted ? letter == '\n' : is_mark(letter))
            return false;
    }
    return !is_quoted;
}

// Whether the text is one quoted word when it stands in quotes.
bool FitsInQuotes(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"' || text[i] == '\n' || (text[i] == '\\' && ++i == text.size()))
            return false;
    }
    return true;
}

bool RefuseValue(const std::string& key) {
    return Refuse("DHCP server: %s: the value would be more than a value to the daemon", key);
}

} // namespace

bool RefuseWriting(TreeWriter& writer) {
    if (writer.write_failed)
        return false;
    writer.write_failed = true;
    return writer.daemon_form ? Refuse("DHCP server: %s: failed to write daemon settings: %s",
                                       kDaemonSettings, std::strerror(errno))
                              : Refuse("DHCP server: failed to print daemon settings");
}

bool WriteLine(TreeWriter& writer, const std::string& text) {
    if (writer.out == nullptr)
        return true;
    for (int i = 0; i < writer.depth; ++i)
        std::fputs("  ", writer.out);
    std::fwrite(text.data(), 1, text.size(), writer.out);
    std::fputc('\n', writer.out);
    return std::ferror(writer.out) == 0 || RefuseWriting(writer);
}

bool CheckValue(const TreeWriter& writer, const std::string& key, const std::string& value) {
    return !writer.daemon_form || (StaysOneValue(key) && StaysOneValue(value)) || RefuseValue(key);
}

bool WriteSetting(TreeWriter& writer, const std::string& key, const std::string& value) {
    if (!CheckValue(writer, key, value))
        return false;
    if (writer.out == nullptr)
        return true;
    return WriteLine(writer, writer.daemon_form ? key + " " + value + ";" : key + " = " + value);
}

bool WriteOption(TreeWriter& writer, const std::string& name, const std::string& value) {
    return WriteSetting(writer, "option " + name, value);
}

bool WriteQuotedOption(TreeWriter& writer, const std::string& name, const std::string& text) {
    if (writer.daemon_form && !FitsInQuotes(text))
        return RefuseValue("option " + name);
    return WriteOption(writer, name, "\"" + text + "\"");
}

bool WriteAddressList(TreeWriter& writer, const std::string& name, Node node, const char* child) {
    std::string list;
    for (Node value = node.FirstChild(); value; value = value.NextSibling()) {
        if (!value.IsNamed(child))
            continue;
        if (!list.empty())
            list += ", ";
        list += value.GetText();
    }
    return WriteOption(writer, name, list);
}

} // namespace settings::dhcp_server
