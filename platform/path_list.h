#pragma once

#include <string>

// Wait for a settings lock, in seconds.
extern const long settings_lock_timeout;

// The appliance's well-known files. They can be assigned: the conversion of a saved settings tree points
// them at that tree.
namespace path_list {

extern std::string local_settings;
extern std::string common_settings;
extern std::string syslog_settings;
extern std::string settings_guard;
extern std::string failover_settings;
extern std::string http_proxy_settings;
extern std::string http_proxy_settings_guard;
extern std::string icap_settings;
extern std::string icap_settings_guard;
extern std::string content_filter_settings;
extern std::string content_filter_settings_guard;
extern std::string l2overip;
extern std::string l2overip_guard;
extern std::string nut;
extern std::string upsmon;
extern std::string nut_guard;
extern std::string settings_lock;
extern std::string critops_lock;
extern std::string velir_sk_nums;

} // namespace path_list
