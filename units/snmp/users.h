#pragma once

#include "settings/file.h"

#include <string>
#include <vector>

// SNMPv3 users and their trap receivers. A switch holds "on" or "off".

namespace snmp {

struct User {
    std::string name;
    std::string pass;
    std::string auth_type;
    std::string encryption; // switch
    std::string read;       // switch
    std::string priv_key;

    bool operator==(const User&) const = default;
};

struct Trapsess {
    std::string destination;
    std::string port;
    std::string prot; // "udp" or "tcp"
    std::string type; // "trap" or "inform"

    bool operator==(const Trapsess&) const = default;
};

// A user as the daemon's files need it.
struct UserEntry {
    User user;
    bool sends_traps; // the switch `trapsess`
    std::vector<Trapsess> receivers;
};

// All users of a loaded file in one walk, sorted by name.
std::vector<UserEntry> ListUserEntries(const settings::File& file);

// Sorted by name.
std::vector<std::string> ListUserNames();
std::vector<User> ListUsers();

// The new user may read, without encryption.
[[nodiscard]] bool AddUser(const std::string& name, const std::string& pass, const std::string& auth_type);
[[nodiscard]] bool RenameUser(const std::string& old_name, const std::string& new_name);
[[nodiscard]] bool SetUserPassword(const std::string& name, const std::string& pass);
[[nodiscard]] bool SetUserAuthType(const std::string& name, const std::string& type);
[[nodiscard]] bool SetUserPrivKey(const std::string& name, const std::string& key);
std::string GetUserPrivKey(const std::string& name);
// Encryption that is off already is told on the terminal and is false.
[[nodiscard]] bool SetUserEncryption(const std::string& name, const std::string& value);
[[nodiscard]] bool DeleteUserPrivKey(const std::string& name);
// Of these two, a user who is not there is not reported and is no failure.
[[nodiscard]] bool SetUserRead(const std::string& name, const std::string& value);
[[nodiscard]] bool DeleteUser(const std::string& name);
[[nodiscard]] bool IsUserRead(const std::string& name);
[[nodiscard]] bool SetUserTrapsess(const std::string& name, const std::string& value);
[[nodiscard]] bool IsUserTrapsess(const std::string& name);

// In document order.
std::vector<std::string> ListUserTrapsessDestinations(const std::string& name);
std::vector<Trapsess> ListUserTrapsess(const std::string& name);
// Of one destination, port and protocol a user has one receiver, whatever its type.
[[nodiscard]] bool AddUserTrapsess(const std::string& name, const std::string& destination,
                                   const std::string& prot, unsigned long port, const std::string& type);
[[nodiscard]] bool DeleteUserTrapsess(const std::string& name, const Trapsess& trapsess);
// Whether a user has a receiver, be its switch on or off.
[[nodiscard]] bool AnyUserHasTrapsess();

} // namespace snmp
