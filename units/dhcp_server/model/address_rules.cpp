#include "units/dhcp_server/model/address_rules.h"

#include "platform/messages.h"
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
    const std::shared_ptr<Level> level = area.LevelIn(file);
    if (level->KnownScope()) {
        scope = *level->KnownScope();
        return true;
    }
    const std::int64_t address = ParseAddress(level->Address(), area.Name(), "subnet address");
    const std::int64_t mask = ParseAddress(level->Mask(), area.Name(), "subnet mask");
    const std::int64_t broadcast = ParseAddress(level->Broadcast(), area.Name(), "broadcast address");
    if (address == kNoAddress || mask == kNoAddress || broadcast == kNoAddress)
        return false;
    scope = {(address & mask) + 1, broadcast};
    level->KnownScope() = scope;
    return true;
}

bool IsInScope(const Area& area, const Scope& scope, const char* label, const std::string& text,
               std::int64_t value) {
    return (scope.first <= value && value < scope.broadcast) ||
           Refuse("DHCP server: %s: incorrect address scope of %s: %s", area.Name(), label, text);
}

// The address of the subnet's listen interface is not in the range. A subnet without one passes.
bool CheckListenAddress(const Area& area, const File& file, const Range& range) {
    const std::shared_ptr<Level> level = area.LevelIn(file);
    if (!level->ListenAddress())
        return true;
    const std::string& text = *level->ListenAddress();
    const std::int64_t address = ParseAddress(text, area.Name(), "interface address");
    if (address == kNoAddress)
        return false;
    return address < range.from || address > range.to ||
           Refuse("DHCP server: %s: address %s of the listen interface is in the dynamic address range "
                  "[%s - %s]",
                  area.Name(), text, range.from_text, range.to_text);
}

} // namespace

void WarnIfNotPrivate(const Area& area, const std::string& value, const char* label) {
    if (!IsPrivate(ParseAddress(value, area.Name(), label)))
        PrintWarning("DHCP server: %s: use of %s %s on local area network is unsafe", area.Name(), value,
                     label);
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
    return netmask <= value || Refuse("DHCP server: %s: incorrect subnet mask scope: %s", area.Name(), mask);
}

bool CheckBroadcastAddress(const Area& area, const File& file, const std::string& value) {
    const std::shared_ptr<Level> level = area.LevelIn(file);
    return value == corvanshell::getbrcast(level->Address(), level->Mask()) ||
           Refuse("DHCP server: %s: incorrect broadcast address: %s", area.Name(), value);
}

bool CheckRange(const Area& area, const File& file, const std::string& from, const std::string& to) {
    const bool from_in_scope = CheckAddressScope(area, file, kLowerBound, from);
    const bool to_in_scope = CheckAddressScope(area, file, kUpperBound, to);
    if (!from_in_scope || !to_in_scope)
        return false;
    const Range range = MakeRange(from, to);
    if (range.from > range.to)
        return RefuseInvalid(area, range);
    if (range.to - range.from >= static_cast<std::int64_t>(kMaximumRange))
        return Refuse("DHCP server: %s: %s [%s - %s] exceeds range addresses limit: %zu", area.Name(),
                      kRangeLabel, from, to, kMaximumRange);
    return CheckListenAddress(area, file, range);
}

bool RefuseInvalid(const Area& area, const Range& range) {
    return Refuse("DHCP server: %s: %s [%s - %s] is invalid", area.Name(), kRangeLabel, range.from_text,
                  range.to_text);
}

bool CheckApart(const Area& area, const Range& range, const Range& old) {
    return range.to < old.from || range.from > old.to ||
           Refuse("DHCP server: %s: %s [%s - %s] intersects with %s [%s - %s]", area.Name(), kRangeLabel,
                  range.from_text, range.to_text, kRangeLabel, old.from_text, old.to_text);
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
        return must_be_inside ||
               Refuse("DHCP server: %s: address of %s is in the dynamic address range [%s - %s]: %s",
                      area.Name(), label, range.from_text, range.to_text, value);
    }
    return !must_be_inside || Refuse("DHCP server: %s: address of %s is out of the dynamic address range: %s",
                                     area.Name(), label, value);
}

bool CheckHostAddressUse(const Area& area, const HostAddresses& hosts, bool must_be_inside, const char* label,
                         const std::string& value) {
    const std::int64_t address = ParseAddress(value, area.Name(), label);
    if (address == kNoAddress)
        return false;
    const HostAddresses::Entry* entry = hosts.FindFirst(address);
    if (entry == nullptr)
        return !must_be_inside ||
               Refuse("DHCP server: %s: address of %s is out of the hosts address range: %s", area.Name(),
                      label, value);
    if (entry->value == kNoAddress)
        return ParseAddress(entry->address.GetText(), area.Name(), "host address") != kNoAddress;
    return must_be_inside || Refuse("DHCP server: %s: address of %s is in use within host %s: %s",
                                    area.Name(), label, entry->address.Parent().GetAttr("name"), value);
}

bool CheckAddressFree(const Area& area, const File& file, bool must_be_inside, const char* label,
                      const std::string& value) {
    const std::shared_ptr<SubnetView> subnet = area.LevelIn(file)->Subnet();
    return CheckDynamicRangeUse(area, subnet->Ranges(), must_be_inside, label, value) &&
           CheckHostAddressUse(area, subnet->Hosts(), must_be_inside, label, value);
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
