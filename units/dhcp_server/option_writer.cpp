#include "units/dhcp_server/option_writer.h"

#include "platform/messages.h"
#include "units/dhcp_server/line_writer.h"
#include "units/dhcp_server/model/address_rules.h"

#include <map>
#include <string>

namespace settings::dhcp_server {
namespace {

constexpr const char* kCustomOption = "custom option";
constexpr const char* kListChild = "address";

struct CustomType {
    const char* name;
    const char* daemon_name;
};

constexpr CustomType kCustomTypes[] = {{"ip", "ip-address"}, {"ascii", "text"}, {"hex", "string"}};

bool PassAny(TreeWriter& /*writer*/, const Area& /*area*/, Node /*option*/) {
    return true;
}

bool CheckMask(TreeWriter& writer, const Area& area, Node option) {
    return CheckSubnetMaskScope(area, writer.file, option.GetText());
}

bool CheckBroadcast(TreeWriter& writer, const Area& area, Node option) {
    return CheckBroadcastAddress(area, writer.file, option.GetText());
}

bool CheckRouters(TreeWriter& writer, const Area& area, Node option) {
    const bool in_scope = CheckOptionAddressesScope(area, writer.file, "router", option, kListChild);
    return CheckOptionAddressesFree(area, writer.file, false, "router", option, kListChild) && in_scope;
}

bool WriteText(TreeWriter& writer, Node option) {
    return WriteOption(writer, option.GetAttr("name"), option.GetText());
}

bool WriteQuotedText(TreeWriter& writer, Node option) {
    return writer.daemon_form ? WriteQuotedOption(writer, option.GetAttr("name"), option.GetText())
                              : WriteText(writer, option);
}

bool WriteTftpServer(TreeWriter& writer, Node option) {
    const std::string server = option.GetText();
    const std::string file = option.GetAttr("file");
    if (!writer.daemon_form)
        return WriteOption(writer, "tftp-server", server + ", file = " + file);
    const bool written = WriteSetting(writer, "next-server", server);
    return (file.empty() || WriteQuotedOption(writer, "bootfile-name", file)) && written;
}

bool WriteList(TreeWriter& writer, Node option) {
    return WriteAddressList(writer, option.GetAttr("name"), option, kListChild);
}

// A list where the option's first child is an address, a text otherwise.
bool WriteListOrText(TreeWriter& writer, Node option) {
    return option.FirstChild().IsNamed(kListChild) ? WriteList(writer, option) : WriteText(writer, option);
}

struct NamedOption {
    const char* name;
    bool (*check)(TreeWriter& writer, const Area& area, Node option); // for the daemon only
    bool (*write)(TreeWriter& writer, Node option);
};

constexpr NamedOption kNamedOptions[] = {
    {"subnet-mask", CheckMask, WriteText},     {"broadcast-address", CheckBroadcast, WriteText},
    {"tftp-server", PassAny, WriteTftpServer}, {"routers", CheckRouters, WriteList},
    {"domain-name", PassAny, WriteQuotedText},
};

constexpr NamedOption kOtherOption = {"", PassAny, WriteListOrText};

bool WriteCustomOption(TreeWriter& writer, Node option, const std::string& number) {
    const std::string type = option.GetAttr("type");
    const std::string text = option.GetText();
    if (!writer.daemon_form)
        return WriteOption(writer, number + ", " + type, text);
    const std::string name = "opt-" + number;
    return type == "ascii" ? WriteQuotedOption(writer, name, text) : WriteOption(writer, name, text);
}

bool WriteDeclaration(TreeWriter& writer, const std::string& number, const std::string& type) {
    for (const CustomType& row : kCustomTypes) {
        if (type == row.name)
            return WriteOption(writer, "opt-" + number, "code " + number + " = " + row.daemon_name);
    }
    return Refuse("DHCP server: unknown type of %s %s: %s", kCustomOption, number, type);
}

// The custom options that a walk in document order has met, descendant::option[@num and @type].
class Declarations {
public:
    explicit Declarations(TreeWriter& writer) : writer_(writer) {}

    // Declares what stands below the node. The parser bounds how deep elements nest.
    bool Declare(Node parent) {
        bool passed = true;
        for (Node child = parent.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsNamed("option") && child.HasAttr("num") && child.HasAttr("type"))
                passed = Meet(child.GetAttr("num"), child.GetAttr("type")) && passed;
            passed = Declare(child) && passed;
        }
        return passed;
    }

private:
    bool Meet(const std::string& number, const std::string& type) {
        const auto [known, is_new] = types_.emplace(number, type);
        if (is_new)
            return WriteDeclaration(writer_, number, type);
        return known->second == type ||
               Refuse("DHCP server: %s %s has different types across settings: %s and %s", kCustomOption,
                      number, known->second, type);
    }

    TreeWriter& writer_;
    std::map<std::string, std::string> types_; // by number
};

} // namespace

bool WriteOptionNode(TreeWriter& writer, const Area& area, Node option) {
    const std::string number = option.GetAttr("num");
    if (!number.empty())
        return WriteCustomOption(writer, option, number);
    const std::string name = option.GetAttr("name");
    const NamedOption* row = &kOtherOption;
    for (const NamedOption& named : kNamedOptions) {
        if (name == named.name)
            row = &named;
    }
    const bool passed = !writer.daemon_form || row->check(writer, area, option);
    return row->write(writer, option) && passed;
}

bool WriteCustomDeclarations(TreeWriter& writer, const Area& area) {
    Declarations declarations(writer);
    return declarations.Declare(area.GetNode(writer.file));
}

} // namespace settings::dhcp_server
