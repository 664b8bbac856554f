#pragma once

#include "settings/file.h"

#include <map>
#include <string>

namespace settings::dhcp_relay {

// Which relay uses which interface, of a settings file that is read once: for who asks of many interfaces.
class InterfaceIndex {
public:
    // Reads the settings file. One that can't be read is reported, and has no relays.
    InterfaceIndex();
    explicit InterfaceIndex(const File& file) { Read(file); }

    // The ID of the relay that uses the interface, in either role; "" when none does.
    std::string Find(const std::string& interface) const;

private:
    void Read(const File& file);

    std::map<std::string, std::string> relays_;
};

} // namespace settings::dhcp_relay
