#pragma once

#include "records/conf_struct.h"

#include <string>

// What the interface commands share.

namespace interfaces {

// One interface's entry, for the length of a command, with the record that holds it.
class InterfaceEdit {
public:
    // Reads the record.
    explicit InterfaceEdit(std::string name);

    // False, reported, when the record can't be read to its end or has no such interface.
    [[nodiscard]] bool Load(const char* missing = "interface does not exist");
    // Writes the entry into the record and the record to its file. A failure is reported.
    [[nodiscard]] bool Save();

    const std::string& Name() const { return name_; }
    const char* CName() const { return name_.c_str(); }

    corvanshell::CConfStruct record;
    corvanshell::InterfaceEntry entry;

private:
    std::string name_;
};

// False, reported, for a name that no interface can have. Nothing that passes means anything to a shell.
[[nodiscard]] bool IsNameUsable(const std::string& name);

// Whether the name is that of a Wi-Fi interface.
[[nodiscard]] bool IsWifiName(const std::string& name);

// What stands in front of most commands: a usable name, a role that may be changed, an entry.
[[nodiscard]] bool OpenForChange(InterfaceEdit& edit);

// False, reported, when the record can't be read to its end: writing it would lose what was not read.
[[nodiscard]] bool IsReadable(const corvanshell::CConfStruct& record);
// A failure is reported.
[[nodiscard]] bool WriteRecord(corvanshell::CConfStruct& record);

// Runs a shell line. False when it can't be run or its exit status is not 0, in silence.
[[nodiscard]] bool RunLine(const std::string& line);

// Plain lines on standard output and on the error stream.
void Print(const std::string& text);
void PrintError(const std::string& text);

// The two lines for a trunk interface where an access interface is wanted; one command spells them right.
void PrintTrunkRefusal();
void PrintTrunkRefusalSpelledRight();

// Whether the DHCP server and the relays let the interface change so. The reason is told.
struct Change {
    bool going_down = false;
    bool address_changes = false; // as the relays are asked
    std::string new_class = corvanshell::kAccessClass;
    std::string address = "0.0.0.0"; // as the server is asked; this stands for no change
    std::string netmask = "0.0.0.0";
};
[[nodiscard]] bool CheckDhcpServer(const std::string& name, const Change& change);
[[nodiscard]] bool CheckDhcpRelay(const std::string& name, const Change& change);
[[nodiscard]] bool CheckDhcp(const std::string& name, const Change& change); // the server, then the relays

// Warns when the web interface's HTTPS certificate names the address.
void WarnOfCertificate(const std::string& address);

// Has the DHCP server unit follow the interface's new address or state.
void UpdateDhcpServer(const std::string& name);

// False, told with the limit, when the system has as many adapters as it may. The text stands behind the
// limit's sentence.
[[nodiscard]] bool HasRoomForAdapter(const char* end_of_sentence);

} // namespace interfaces
