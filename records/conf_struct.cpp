#include "records/conf_struct.h"

#include "front/helpers/settings_lock.h"
#include "platform/path_list.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <cstdlib>
#include <iostream>

namespace corvanshell {

// One global key of the file. Exactly one member pointer of a row is set; a Wi-Fi role is none of the three.
struct GlobalKey {
    const char* name;
    const char* written; // the key as it is written, tabs included
    std::string CConfStruct::*text;
    unsigned long CConfStruct::*number;
    bool optional; // left out of the file when empty

    static const GlobalKey kKeys[12];

    void Set(CConfStruct& record, const std::string& value) const {
        if (text != nullptr)
            record.*text = value;
        else if (number != nullptr)
            record.*number = std::strtoul(value.c_str(), nullptr, 10);
        else
            record.wifi_server = boost::iequals(value, "server");
    }

    std::string Get(const CConfStruct& record) const {
        if (text != nullptr)
            return record.*text;
        if (number != nullptr)
            return std::to_string(record.*number);
        return record.wifi_server ? "server" : "client";
    }
};

const GlobalKey GlobalKey::kKeys[12] = {
    {"HOSTNAME", "HOSTNAME\t", &CConfStruct::host_name, nullptr, false},
    {"DEFAULT_DHCP_METRIC", "DEFAULT_DHCP_METRIC\t", &CConfStruct::default_dhcp_metric, nullptr, false},
    {"USB_MODEM_METRIC", "USB_MODEM_METRIC\t", &CConfStruct::usb_modem_metric, nullptr, true},
    {"GSMCOUNTRY", "GSMCOUNTRY\t", &CConfStruct::gsm_country, nullptr, true},
    {"GSMPROVIDER", "GSMPROVIDER\t", &CConfStruct::gsm_provider, nullptr, true},
    {"GSMSIMPIN", "GSMSIMPIN\t", &CConfStruct::gsm_sim_pin, nullptr, true},
    {"GSMTRAFFIC_LIMIT", "GSMTRAFFIC_LIMIT\t", nullptr, &CConfStruct::gsm_traffic_limit, false},
    {"GSMTRAFFIC_DAY", "GSMTRAFFIC_DAY\t", nullptr, &CConfStruct::gsm_traffic_day, false},
    {"WIFIROLE", "WIFIROLE\t", nullptr, nullptr, false},
    {"SWAPSIZEMB", "SWAPSIZEMB\t", nullptr, &CConfStruct::swap_size_mb, false},
    {"REBOOTSCHEDULETIME", "REBOOTSCHEDULETIME\t", &CConfStruct::reboot_time, nullptr, false},
    {"REBOOTSCHEDULEWDAY", "REBOOTSCHEDULEWDAY\t", &CConfStruct::reboot_weekday, nullptr, false},
};

namespace {

struct DefaultFlag {
    const char* name;
    bool on;
};

constexpr DefaultFlag kDefaultFlags[] = {
    {"DNS_DYNAMIC", false},       {"WIFI", false},           {"PPP_SERVER", false},
    {"UPS_MONITOR", false},       {"L2TP", false},           {"SMTP_MODE", false},
    {"GSMMODE", false},           {"USB_MODEM_ROUTE", true}, {"GSMSETDNS", true},
    {"GSMTRAFFIC_COUNTER", true}, {"LTEMODE", false},        {"SWAP", false},
};

constexpr const char* kDefaultHostName = "zq100";
constexpr const char* kVlanPrefix = "VLAN";
constexpr const char* kCommentSuffix = "_COMMENT";

} // namespace

CConfStruct::CConfStruct(const std::string& file, bool guarded) : BasicConfStruct(file, guarded) {
    for (const DefaultFlag& flag : kDefaultFlags)
        CConfStruct::SetFlag(flag.name, flag.on);
    try {
        Read();
    } catch (const std::exception&) {
        std::cerr << "ReadConf exception\n";
    }
    // Behind the read, so that the lists stop commands and not the file.
    try {
        ReadRestrictions(restrictions);
    } catch (const std::exception&) {
        std::cerr << "ReadRestrictedList exception\n";
    }
    if (host_name.empty())
        host_name = kDefaultHostName;
    for (auto& [name, entry] : interfaces)
        Normalise(entry);
}

bool CConfStruct::SetFlag(const char* name, bool on) {
    if (on && !IsServicePermitted(restrictions, name))
        return false;
    return BasicConfStruct::SetFlag(name, on);
}

bool CConfStruct::FindInterface(const std::string& name, InterfaceEntry& entry) const {
    const auto found = interfaces.find(name);
    if (found == interfaces.end())
        return false;
    entry = found->second;
    return true;
}

bool CConfStruct::AddInterface(const std::string& name, const InterfaceEntry& entry, bool replace) {
    if (!replace && interfaces.contains(name))
        return false;
    interfaces[name] = entry;
    return true;
}

bool CConfStruct::ParseValue(const std::string& key, const std::string& value) {
    for (const GlobalKey& row : GlobalKey::kKeys) {
        if (key != row.name)
            continue;
        row.Set(*this, value);
        return true;
    }
    return false;
}

bool CConfStruct::ParseLine(const std::string& line, const std::string& key, const std::string& value,
                            const Words& tokens) {
    return ParseInterfaceKey(key, value, tokens) || ParseVlanComment(line, key);
}

bool CConfStruct::ParseInterfaceKey(const std::string& key, const std::string& value, const Words& tokens) {
    const std::size_t sign = key.find('_');
    if (!IsInterfaceKey(key) || sign == std::string::npos)
        return false;
    const std::string name = boost::to_lower_copy(key.substr(0, sign));
    const auto known = interfaces.find(name);
    InterfaceEntry entry = known != interfaces.end() ? known->second : InterfaceEntry();
    if (!SetInterfaceField(entry, boost::trim_copy(key.substr(sign + 1)), boost::trim_copy(value), tokens))
        return false;
    interfaces[name] = std::move(entry);
    return true;
}

bool CConfStruct::ParseVlanComment(const std::string& line, const std::string& key) {
    if (!key.starts_with(kVlanPrefix) || !key.ends_with(kCommentSuffix))
        return false;
    const std::size_t start = std::string(kVlanPrefix).size();
    const std::size_t end = key.size() - std::string(kCommentSuffix).size();
    if (end <= start)
        return false;
    vlan_comments[key.substr(start, end - start)] =
        boost::trim_copy(line.substr(line.find(key) + key.size()));
    return true;
}

void CConfStruct::WriteAll(std::ostream& output) const {
    for (const auto& [name, entry] : interfaces)
        WriteInterface(output, name, entry);
    for (const auto& [id, comment] : vlan_comments)
        output << kVlanPrefix << id << "_COMMENT\t" << comment << '\n';
    for (const GlobalKey& row : GlobalKey::kKeys) {
        const std::string value = row.Get(*this);
        if (!row.optional || !value.empty())
            output << row.written << value << '\n';
    }
    WriteFlags(output);
    WriteLines(output);
}

bool CConfStruct::Write() {
    lock_tool::FileLock lock(path_list::settings_lock);
    return LockForChange(lock) && WriteFile(!gsm_sim_pin.empty());
}

} // namespace corvanshell
