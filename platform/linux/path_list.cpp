#include "platform/path_list.h"

const long settings_lock_timeout = 10;

namespace path_list {

std::string local_settings = "/mnt/main/etc/local.conf";
std::string common_settings = "/mnt/main/etc/common.conf";
std::string syslog_settings = "/mnt/main/etc/syslog.conf";
std::string settings_guard = "/mnt/main/etc/settings.crg";
std::string failover_settings = "/etc/failover.ini";
std::string http_proxy_settings = "/mnt/main/etc/http-proxy.conf";
std::string http_proxy_settings_guard = "/mnt/main/etc/http-proxy.conf.crg";
std::string icap_settings = "/mnt/main/etc/icap.conf";
std::string icap_settings_guard = "/mnt/main/etc/icap.conf.crg";
std::string content_filter_settings = "/mnt/main/etc/settings/content-filter.xml";
std::string content_filter_settings_guard = "/mnt/main/etc/settings/content-filter.xml.crg";
std::string l2overip = "/mnt/main/etc/l2overip.conf";
std::string l2overip_guard = "/mnt/main/etc/l2overip-config.crg";
std::string nut = "/etc/nut/ups.conf";
std::string upsmon = "/etc/nut/upsmon.conf";
std::string nut_guard = "/etc/nut/nut.crg";
std::string settings_lock = "/run/lock/settings.lock";
std::string critops_lock = "/run/lock/critops.lock";
std::string velir_sk_nums = "/mnt/main/etc/sk_nums";

} // namespace path_list
