#include "commands/interfaces/command_frame.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/roles.h"
#include "front/probes/adapters.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <iostream>

namespace interfaces {
namespace {

constexpr const char* kClassAdvice = "You should change interface class to access to execute command.";

} // namespace

InterfaceEdit::InterfaceEdit(std::string name)
    : record(path_list::local_settings, true), name_(std::move(name)) {}

bool InterfaceEdit::Load(const char* missing) {
    return record.CheckRead() && (record.FindInterface(name_, entry) || Refuse("%s: %s", name_, missing));
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
    return IsNameUsable(edit.Name()) && edit.Load() &&
           !IsInterfaceRoleRefused(edit.record, edit.Name(), kRefuseSlave, true);
}

bool WriteRecord(corvanshell::CConfStruct& record) {
    return record.Write() || Refuse(Tr("failed to write network settings"));
}

bool RunLine(const std::string& line) {
    return BaseExec::run(line) == 0;
}

void WriteLine(const std::string& text) {
    std::cout << text << std::endl;
}

void WriteErrorLine(const std::string& text) {
    std::cerr << text << std::endl;
}

bool WriteAndLog(std::ostream& stream, const char* prefix, const std::string& text) {
    stream << text << std::endl;
    return RefuseInLog("%s%s", prefix, text);
}

void WriteTrunkRefusal() {
    WriteLine("Can not execute for inteface of trunk class.");
    WriteLine(kClassAdvice);
}

void WriteTrunkRefusalSpelledRight() {
    WriteLine("Can not execute for interface of trunk class.");
    WriteLine(kClassAdvice);
}

bool HasRoomForAdapter(const char* end_of_sentence) {
    const long limit = GetNetworkAdapterLimit();
    if (CanAddNetworkAdapter())
        return true;
    PrintInfo("The maximum limit of %ld network interfaces on the system is reached%s", limit,
              end_of_sentence);
    return false;
}

} // namespace interfaces
