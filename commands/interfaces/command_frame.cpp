#include "commands/interfaces/command_frame.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/roles.h"
#include "commands/services/web_ui.h"
#include "front/probes/adapters.h"
#include "platform/console.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/rules/interface_change.h"
#include "units/dhcp_server/interface_rules.h"
#include "units/dhcp_server/model/gates.h"

#include <iostream>
#include <libintl.h>

namespace interfaces {
namespace {

constexpr const char* kClassAdvice = "You should change interface class to access to execute command.";

} // namespace

InterfaceEdit::InterfaceEdit(std::string name)
    : record(path_list::local_settings, true), name_(std::move(name)) {}

bool InterfaceEdit::Load(const char* missing) {
    if (!IsReadable(record))
        return false;
    if (record.FindInterface(name_, entry))
        return true;
    shell_print_error("%s: %s", CName(), missing);
    return false;
}

bool InterfaceEdit::Save() {
    record.AddInterface(name_, entry, true);
    return WriteRecord(record);
}

bool IsNameUsable(const std::string& name) {
    return arguments::Check({{name, arguments::IsInterfaceName, "interface"}});
}

bool IsWifiName(const std::string& name) {
    return name.starts_with("wlan") || name.starts_with("ra");
}

bool OpenForChange(InterfaceEdit& edit) {
    return IsNameUsable(edit.Name()) && !IsInterfaceRoleRefused(edit.Name(), kRefuseSlave, true) &&
           edit.Load();
}

bool IsReadable(const corvanshell::CConfStruct& record) {
    if (!record.IsWhole())
        shell_print_error("%s", gettext("failed to read network settings, nothing is changed"));
    return record.IsWhole();
}

bool WriteRecord(corvanshell::CConfStruct& record) {
    const bool written = record.Write();
    if (!written)
        shell_print_error("%s", gettext("failed to write network settings"));
    return written;
}

bool RunLine(const std::string& line) {
    return BaseExec::run(line) == 0;
}

void Print(const std::string& text) {
    std::cout << text << std::endl;
}

void PrintError(const std::string& text) {
    std::cerr << text << std::endl;
}

void PrintTrunkRefusal() {
    Print("Can not execute for inteface of trunk class.");
    Print(kClassAdvice);
}

void PrintTrunkRefusalSpelledRight() {
    Print("Can not execute for interface of trunk class.");
    Print(kClassAdvice);
}

bool CheckDhcpServer(const std::string& name, const Change& change) {
    return settings::dhcp_server::CheckDhcpServerInterfaceChange(name, change.going_down, change.new_class,
                                                                 change.address, change.netmask);
}

bool CheckDhcpRelay(const std::string& name, const Change& change) {
    return settings::dhcp_relay::CheckRelayInterfaceChange(name, change.going_down, change.address_changes,
                                                           change.new_class);
}

bool CheckDhcp(const std::string& name, const Change& change) {
    return CheckDhcpServer(name, change) && CheckDhcpRelay(name, change);
}

void WarnOfCertificate(const std::string& address) {
    if (is_ip_in_webui_https_cert(address))
        shell_print_warning(
            "The command execution changes the IP address specified in the certificate for the "
            "HTTPS connection. Certificate reissue may be required.");
}

void UpdateDhcpServer(const std::string& name) {
    const bool strict = corvanshell::CommonConfStruct().GetFlag("DHCP_SERVER") ||
                        settings::dhcp_server::IsDhcpServerRunning();
    settings::dhcp_server::UpdateDhcpServerInterface(name, strict);
}

bool HasRoomForAdapter(const char* end_of_sentence) {
    const long limit = GetNetworkAdapterLimit();
    if (CanAddNetworkAdapter())
        return true;
    shell_print_info("The maximum limit of %ld network interfaces on the system is reached%s", limit,
                     end_of_sentence);
    return false;
}

} // namespace interfaces
