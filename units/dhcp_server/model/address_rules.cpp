#include "units/dhcp_server/model/address_rules.h"

#include "platform/console.h"
#include "platform/network.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/options.h"

namespace settings::dhcp_server {
namespace {

constexpr std::size_t kMaximumRange = 65536;
constexpr const char* kLowerBound = "lower bound of the range";
constexpr const char* kUpperBound = "upper bound of the range";

struct PrivateRange {
    std::int64_t from;
    std::int64_t to;
};

const PrivateRange* PrivateRanges() {
    static const PrivateRange ranges[] = {
        {ParseAddressQuiet("10.0.0.0"), ParseAddressQuiet("10.255.255.255")},
        {ParseAddressQuiet("172.16.0.0"), ParseAddressQuiet("172.31.255.255")},
        {ParseAddressQuiet("192.168.0.0"), ParseAddressQuiet("192.168.255.255")},
        {kNoAddress, kNoAddress},
    };
    return ranges;
}

bool IsPrivate(std::int64_t value) {
    for (const PrivateRange* range = PrivateRanges(); range->from != kNoAddress; ++range) {
        if (range->from <= value && value <= range->to)
            return true;
    }
    return false;
}

bool ReadScope(const Area& area, const File& file, Scope& scope) {
    // A host may narrow the scope; all checks of the subnet itself share one.
    SubnetView* view = area.View();
    const bool is_subnet = view != nullptr && area.BoundNode() == view->Subnet();
    if (is_subnet && view->KnownScope()) {
        scope = *view->KnownScope();
        return true;
    }
    const std::int64_t address = ParseAddress(GetSubnetAddress(area, file), area.Name(), "subnet address");
    const std::int64_t mask = ParseAddress(GetSubnetMask(area, file), area.Name(), "subnet mask");
    const std::int64_t broadcast =
        ParseAddress(GetBroadcastAddress(area, file), area.Name(), "broadcast address");
    if (address == kNoAddress || mask == kNoAddress || broadcast == kNoAddress)
        return false;
    scope = {(address & mask) + 1, broadcast};
    if (is_subnet)
        view->KnownScope() = scope;
    return true;
}

bool IsInScope(const Area& area, const Scope& scope, const char* label, const std::string& text,
               std::int64_t value) {
    if (scope.first <= value && value < scope.broadcast)
        return true;
    shell_print_error("DHCP server: %s: incorrect address scope of %s: %s", area.Name().c_str(), label,
                      text.c_str());
    return false;
}

bool ReportOutOfRange(const Area& area, const char* label, const std::string& value) {
    shell_print_error("DHCP server: %s: address of %s is out of the dynamic address range: %s",
                      area.Name().c_str(), label, value.c_str());
    return false;
}

// The address of the subnet's listen interface is not in the range. A subnet without one passes.
bool CheckListenAddress(const Area& area, const File& file, const Range& range) {
    std::string text;
    if (area.View() != nullptr) {
        if (!area.View()->ListenAddress())
            return true;
        text = *area.View()->ListenAddress();
    } else {
        const Node interface = FirstIn(area, file, "interface[@type = 'listen' and text()]");
        if (!interface)
            return true;
        text = interface.GetAttr("address");
    }
    const std::int64_t address = ParseAddress(text, area.Name(), "interface address");
    if (address == kNoAddress)
        return false;
    if (address < range.from || address > range.to)
        return true;
    shell_print_error("DHCP server: %s: address %s of the listen interface is in the dynamic address range "
                      "[%s - %s]",
                      area.Name().c_str(), text.c_str(), range.from_text.c_str(), range.to_text.c_str());
    return false;
}

} // namespace

void WarnIfNotPrivate(const Area& area, const std::string& value, const char* label) {
    if (!IsPrivate(ParseAddress(value, area.Name(), label)))
        shell_print_warning("DHCP server: %s: use of %s %s on local area network is unsafe",
                            area.Name().c_str(), value.c_str(), label);
}

bool CheckAddressScope(const Area& area, const File& file, const char* label, const std::string& value) {
    const std::int64_t address = ParseAddress(value, area.Name(), label);
    Scope scope = {};
    return address != kNoAddress && ReadScope(area, file, scope) &&
           IsInScope(area, scope, label, value, address);
}

bool CheckOptionAddressesScope(const Area& area, const File& file, const char* label, Node option,
                               const char* child_name) {
    Scope scope = {};
    bool scope_known = false;
    bool passed = true;
    for (Node child = option.FirstChild(); child; child = child.NextSibling()) {
        if (!child.IsNamed(child_name))
            continue;
        const std::string text = child.GetText();
        const std::int64_t address = ParseAddress(text, area.Name(), label);
        if (address == kNoAddress)
            return false;
        if (!scope_known && !ReadScope(area, file, scope))
            return false;
        scope_known = true;
        passed = IsInScope(area, scope, label, text, address) && passed;
    }
    return passed;
}

bool CheckSubnetMaskScope(const Area& area, const File& file, const std::string& mask) {
    const std::int64_t netmask = ParseAddress(GetSubnetNetmask(area, file), area.Name(), "subnet netmask");
    const std::int64_t value = ParseAddress(mask, area.Name(), "subnet mask");
    if (netmask == kNoAddress || value == kNoAddress)
        return false;
    if (netmask <= value)
        return true;
    shell_print_error("DHCP server: %s: incorrect subnet mask scope: %s", area.Name().c_str(), mask.c_str());
    return false;
}

bool CheckBroadcastAddress(const Area& area, const File& file, const std::string& value) {
    if (value == corvanshell::getbrcast(GetSubnetAddress(area, file), GetSubnetMask(area, file)))
        return true;
    shell_print_error("DHCP server: %s: incorrect broadcast address: %s", area.Name().c_str(), value.c_str());
    return false;
}

bool CheckRange(const Area& area, const File& file, const std::string& from, const std::string& to) {
    const bool from_in_scope = CheckAddressScope(area, file, kLowerBound, from);
    const bool to_in_scope = CheckAddressScope(area, file, kUpperBound, to);
    if (!from_in_scope || !to_in_scope)
        return false;
    const Range range = {from, to, ParseAddressQuiet(from), ParseAddressQuiet(to)};
    if (range.from > range.to) {
        shell_print_error("DHCP server: %s: %s [%s - %s] is invalid", area.Name().c_str(), kRangeLabel,
                          from.c_str(), to.c_str());
        return false;
    }
    if (range.to - range.from >= static_cast<std::int64_t>(kMaximumRange)) {
        shell_print_error("DHCP server: %s: %s [%s - %s] exceeds range addresses limit: %zu",
                          area.Name().c_str(), kRangeLabel, from.c_str(), to.c_str(), kMaximumRange);
        return false;
    }
    return CheckListenAddress(area, file, range);
}

bool HasBounds(const Area& area, const Range& range) {
    if (range.from == kNoAddress)
        ParseAddress(range.from_text, area.Name(), kLowerBound);
    if (range.to == kNoAddress)
        ParseAddress(range.to_text, area.Name(), kUpperBound);
    return range.from != kNoAddress && range.to != kNoAddress;
}

bool CheckDynamicRangeUse(const Area& area, const std::vector<Range>& ranges, bool must_be_inside,
                          const char* label, const std::string& value) {
    const std::int64_t address = ParseAddress(value, area.Name(), label);
    if (address == kNoAddress)
        return false;
    for (const Range& range : ranges) {
        if (!HasBounds(area, range))
            return false;
        if (address < range.from || address > range.to)
            continue;
        if (must_be_inside)
            return true;
        shell_print_error("DHCP server: %s: address of %s is in the dynamic address range [%s - %s]: %s",
                          area.Name().c_str(), label, range.from_text.c_str(), range.to_text.c_str(),
                          value.c_str());
        return false;
    }
    return !must_be_inside || ReportOutOfRange(area, label, value);
}

bool CheckHostAddressUse(const Area& area, const HostAddresses& hosts, bool must_be_inside, const char* label,
                         const std::string& value) {
    const std::int64_t address = ParseAddress(value, area.Name(), label);
    if (address == kNoAddress)
        return false;
    const HostAddresses::Entry* entry = hosts.FindFirst(address);
    if (entry == nullptr) {
        if (must_be_inside)
            shell_print_error("DHCP server: %s: address of %s is out of the hosts address range: %s",
                              area.Name().c_str(), label, value.c_str());
        return !must_be_inside;
    }
    if (entry->value == kNoAddress) {
        ParseAddress(entry->text, area.Name(), "host address");
        return false;
    }
    if (!must_be_inside)
        shell_print_error("DHCP server: %s: address of %s is in use within host %s: %s", area.Name().c_str(),
                          label, entry->host_name.c_str(), value.c_str());
    return must_be_inside;
}

bool CheckAddressFree(const Area& area, const File& file, bool must_be_inside, const char* label,
                      const std::string& value) {
    if (SubnetView* view = area.View())
        return CheckDynamicRangeUse(area, view->Ranges(), must_be_inside, label, value) &&
               CheckHostAddressUse(area, view->Hosts(), must_be_inside, label, value);
    const char* up = IsHost(area, file) ? "../" : "";
    return CheckDynamicRangeUse(area, ReadRanges(SelectIn(area, file, "%srange[@from and @to]", up)),
                                must_be_inside, label, value) &&
           CheckHostAddressUse(area, HostAddresses(SelectIn(area, file, "%shost/address", up)),
                               must_be_inside, label, value);
}

bool CheckOptionAddressesFree(const Area& area, const File& file, bool must_be_inside, const char* label,
                              Node option, const char* child_name) {
    bool passed = true;
    for (Node child = option.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsNamed(child_name))
            passed = CheckAddressFree(area, file, must_be_inside, label, child.GetText()) && passed;
    }
    return passed;
}

} // namespace settings::dhcp_server
