#pragma once

#include "records/conf_struct.h"

#include <ostream>
#include <string>

// What the interface commands share.

namespace interfaces {

// One interface's entry, for the length of a command, with the record that holds it. The record is read once,
// and all of the command's checks see this one state.
class InterfaceEdit {
public:
    // Reads the record.
    explicit InterfaceEdit(std::string name);

    // False, reported, when the record was not read to its end, for writing it would lose what was not read,
    // or has no such interface.
    [[nodiscard]] bool Load(const char* missing = "interface does not exist");
    // Writes the entry into the record and the record to its file. A failure is reported.
    [[nodiscard]] bool Save();

    const std::string& Name() const { return name_; }

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

// A failure is reported.
[[nodiscard]] bool WriteRecord(corvanshell::CConfStruct& record);

// Runs a shell line. False when it can't be run or its exit status is not 0, in silence.
[[nodiscard]] bool RunLine(const std::string& line);

// Plain lines on standard output and on the error stream.
void WriteLine(const std::string& text);
void WriteErrorLine(const std::string& text);
// A plain line that the log holds too, as an error behind the family's prefix. False, for a command to end
// with.
bool WriteAndLog(std::ostream& stream, const char* prefix, const std::string& text);

// The two lines for a trunk interface where an access interface is wanted; one command spells them right.
void WriteTrunkRefusal();
void WriteTrunkRefusalSpelledRight();

// False, told with the limit, when the system has as many adapters as it may. The text stands behind the
// limit's sentence.
[[nodiscard]] bool HasRoomForAdapter(const char* end_of_sentence);

} // namespace interfaces
