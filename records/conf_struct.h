#pragma once

#include "records/basic_conf_struct.h"
#include "records/interface_entry.h"
#include "records/service_permissions.h"

#include <map>
#include <string>

namespace corvanshell {

// The network settings of this appliance: interfaces, host name, cellular and reboot settings, service flags.
// A record is a snapshot: of two that are written the later one wins.
class CConfStruct : public BasicConfStruct {
public:
    using InterfaceMap = std::map<std::string, InterfaceEntry>; // by lower-case name

    // Reads the file. What the file doesn't mention has its default; a read that breaks off is told on the
    // error stream and leaves what was read so far.
    CConfStruct(const std::string& path, bool check);

    [[nodiscard]] bool Write() override;
    // Refuses to switch on a service that the present mode or licence forbids.
    bool SetFlag(const char* name, bool on) override;

    // Fills `entry` when the interface is in the record.
    [[nodiscard]] bool FindInterface(const std::string& name, InterfaceEntry& entry) const;
    // False when the interface exists and `replace` is not set.
    bool AddInterface(const std::string& name, const InterfaceEntry& entry, bool replace);
    void RemoveInterface(const std::string& name) { interfaces.erase(name); }
    const InterfaceMap& Interfaces() const { return interfaces; }
    const std::string& HostName() const { return host_name; }
    const std::string& DefaultDhcpMetric() const { return default_dhcp_metric; }

    void SetDefaultDhcpMetric(const std::string& metric) { default_dhcp_metric = metric; }
    // Whether the Wi-Fi role is access point, not client.
    bool IsWifiServer() const { return wifi_server; }
    void SetVlanComment(const std::string& id, const std::string& comment) { vlan_comments[id] = comment; }
    void RemoveVlanComment(const std::string& id) { vlan_comments.erase(id); }

protected:
    bool ParseValue(const std::string& key, const std::string& value) override;
    bool ParseLine(const std::string& line, const std::string& key, const std::string& value,
                   const Words& tokens) override;

private:
    friend struct GlobalKey;

    bool ParseInterfaceKey(const std::string& key, const std::string& value, const Words& tokens);
    bool ParseVlanComment(const std::string& line, const std::string& key);
    void WriteAll(std::ostream& output) const override;

    std::string host_name;
    std::string default_dhcp_metric = "70";
    std::string usb_modem_metric;
    std::string gsm_country;
    std::string gsm_provider;
    std::string gsm_sim_pin;
    unsigned long gsm_traffic_limit = 0;
    unsigned long gsm_traffic_day = 1;
    bool wifi_server = false;
    unsigned long swap_size_mb = 0;
    std::string reboot_time = "00:00";
    std::string reboot_weekday = "everyday";
    InterfaceMap interfaces;
    std::map<std::string, std::string> vlan_comments; // by VLAN ID
    ServiceRestrictions restrictions;
};

} // namespace corvanshell
