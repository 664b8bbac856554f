#include "shell/dhcp_options.h"

#include <algorithm>
#include <iterator>

namespace shell {
namespace {

struct Option {
    const char* name;
    OptionForm form;
};

// Those with commands of their own are not among them.
constexpr Option kOptions[] = {
    {"all-subnets-local", OptionForm::kFlag},
    {"arp-cache-timeout", OptionForm::kLong},
    {"boot-size", OptionForm::kShort},
    {"cookie-servers", OptionForm::kAddresses},
    {"default-ip-ttl", OptionForm::kByte},
    {"default-tcp-ttl", OptionForm::kByte},
    {"finger-server", OptionForm::kAddresses},
    {"font-servers", OptionForm::kAddresses},
    {"ieee802-3-encapsulation", OptionForm::kFlag},
    {"ien116-name-servers", OptionForm::kAddresses},
    {"impress-servers", OptionForm::kAddresses},
    {"interface-mtu", OptionForm::kShort},
    {"ip-forwarding", OptionForm::kFlag},
    {"irc-server", OptionForm::kAddresses},
    {"log-servers", OptionForm::kAddresses},
    {"lpr-servers", OptionForm::kAddresses},
    {"mask-supplier", OptionForm::kFlag},
    {"max-dgram-reassembly", OptionForm::kShort},
    {"mobile-ip-home-agent", OptionForm::kAddresses},
    {"nds-servers", OptionForm::kAddresses},
    {"netbios-dd-server", OptionForm::kAddresses},
    {"netbios-node-type", OptionForm::kByte},
    {"nis-servers", OptionForm::kAddresses},
    {"nisplus-servers", OptionForm::kAddresses},
    {"nntp-server", OptionForm::kAddresses},
    {"non-local-source-routing", OptionForm::kFlag},
    {"path-mtu-aging-timeout", OptionForm::kLong},
    {"perform-mask-discovery", OptionForm::kFlag},
    {"pop-server", OptionForm::kAddresses},
    {"resource-location-servers", OptionForm::kAddresses},
    {"router-discovery", OptionForm::kFlag},
    {"smtp-server", OptionForm::kAddresses},
    {"streettalk-directory-assistance-server", OptionForm::kAddresses},
    {"streettalk-server", OptionForm::kAddresses},
    {"tcp-keepalive-garbage", OptionForm::kFlag},
    {"tcp-keepalive-interval", OptionForm::kLong},
    {"time-servers", OptionForm::kAddresses},
    {"trailer-encapsulation", OptionForm::kFlag},
    {"www-server", OptionForm::kAddresses},
    {"x-display-manager", OptionForm::kAddresses},
};

template <class Wanted>
ShellWords ListNames(Wanted wanted) {
    ShellWords names;
    for (const Option& option : kOptions) {
        if (wanted(option))
            names.emplace_back(option.name);
    }
    return names;
}

} // namespace

bool HasForm(const std::string& option, OptionForm form) {
    return std::any_of(std::begin(kOptions), std::end(kOptions),
                       [&](const Option& known) { return option == known.name && form == known.form; });
}

ShellWords ListOptions(OptionForm form) {
    return ListNames([form](const Option& option) { return option.form == form; });
}

ShellWords ListAllOptions() {
    return ListNames([](const Option&) { return true; });
}

} // namespace shell
