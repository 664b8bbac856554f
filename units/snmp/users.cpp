#include "units/snmp/users.h"

#include "front/helpers/text.h"
#include "units/snmp/settings_access.h"

#include <algorithm>

namespace snmp {
namespace {

using settings::File;
using settings::IsLiteral;
using settings::Node;
using settings::NodeSet;

Node FindUser(const File& file, const std::string& name) {
    return IsLiteral(name) ? file.SelectFirst("/unit/agent/user[@name = '%s']", name) : Node();
}

std::string GetUserAttr(const std::string& name, const char* attribute) {
    return Read(kCommonUnit, [&](const File& file) { return FindUser(file, name).GetAttr(attribute); });
}

// `failure` is what is said when there is no such user.
bool SetUserAttr(const std::string& name, const char* attribute, const std::string& value,
                 const std::string& failure) {
    return Edit(kCommonUnit, [&](File& file) {
        return FindUser(file, name).SetAttr(attribute, value) || Refuse("%s", failure);
    });
}

Trapsess ReadTrapsess(Node node) {
    return {node.GetAttr("destination"), node.GetAttr("port"), node.GetAttr("prot"), node.GetAttr("type")};
}

std::vector<Trapsess> ReadReceivers(Node user) {
    std::vector<Trapsess> receivers;
    for (Node child = user.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsNamed("trapsess"))
            receivers.push_back(ReadTrapsess(child));
    }
    return receivers;
}

UserEntry ReadUser(Node node) {
    return {{node.GetAttr("name"), node.GetAttr("pass"), node.GetAttr("auth_type"),
             node.GetAttr("encryption"), node.GetAttr("read"), node.GetAttr("priv_key")},
            node.GetAttr("trapsess") == "on",
            ReadReceivers(node)};
}

bool CheckNewTrapsess(Node user, const std::string& name, const Trapsess& wanted, unsigned long port) {
    const std::vector<Trapsess> known = ReadReceivers(user);
    if (std::none_of(known.begin(), known.end(), [&](const Trapsess& one) {
            return one.destination == wanted.destination && one.port == wanted.port &&
                   one.prot == wanted.prot;
        }))
        return true;
    PrintInfo("%s -> %s:%lu %s for user %s already exists", wanted.type == "trap" ? "Trap" : "Inform",
              wanted.destination, port, ToUpper(wanted.prot), name);
    return false;
}

Node FindTrapsess(const File& file, const std::string& name, const Trapsess& trapsess) {
    if (!IsLiteral(name + trapsess.destination + trapsess.port + trapsess.prot + trapsess.type))
        return {};
    return file.SelectFirst("/unit/agent/user[@name = '%s']/trapsess[@destination = '%s' and @port = '%s' "
                            "and @prot = '%s' and @type = '%s']",
                            name, trapsess.destination, trapsess.port, trapsess.prot, trapsess.type);
}

} // namespace

std::vector<UserEntry> ListUserEntries(const File& file) {
    const NodeSet nodes = file.Select("/unit/agent/user");
    std::vector<UserEntry> entries;
    for (std::size_t i = 0; i < nodes.Size(); ++i)
        entries.push_back(ReadUser(nodes.At(i)));
    std::stable_sort(entries.begin(), entries.end(), [](const UserEntry& one, const UserEntry& other) {
        return one.user.name < other.user.name;
    });
    return entries;
}

std::vector<User> ListUsers() {
    std::vector<User> users;
    for (UserEntry& entry : Read(kCommonUnit, ListUserEntries))
        users.push_back(std::move(entry.user));
    return users;
}

std::vector<std::string> ListUserNames() {
    std::vector<std::string> names;
    for (User& user : ListUsers())
        names.push_back(std::move(user.name));
    return names;
}

bool AddUser(const std::string& name, const std::string& pass, const std::string& auth_type) {
    return Edit(kCommonUnit, [&](File& file) {
        return file.SelectFirst("/unit/agent")
                   .AddChild("user")
                   .NewAttr("name", name)
                   .NewAttr("pass", pass)
                   .NewAttr("read", "on")
                   .NewAttr("auth_type", auth_type)
                   .NewAttr("encryption", "off") ||
               Refuse("Failed to add user %s", name);
    });
}

bool RenameUser(const std::string& old_name, const std::string& new_name) {
    return SetUserAttr(old_name, "name", new_name, "Failed to change user name");
}
bool SetUserPassword(const std::string& name, const std::string& pass) {
    return SetUserAttr(name, "pass", pass, "Failed to change user password");
}
bool SetUserAuthType(const std::string& name, const std::string& type) {
    return SetUserAttr(name, "auth_type", type, "Failed to change user auth_type");
}
bool SetUserPrivKey(const std::string& name, const std::string& key) {
    return SetUserAttr(name, "priv_key", key, "Failed to set privacy key for " + name);
}
bool DeleteUserPrivKey(const std::string& name) {
    return SetUserAttr(name, "priv_key", "", "Failed to delete privacy key for user " + name);
}
bool SetUserTrapsess(const std::string& name, const std::string& value) {
    return SetUserAttr(name, "trapsess", value, "Failed to set trapsess mode for user " + name);
}

std::string GetUserPrivKey(const std::string& name) {
    return GetUserAttr(name, "priv_key");
}
bool IsUserRead(const std::string& name) {
    return GetUserAttr(name, "read") == "on";
}
bool IsUserTrapsess(const std::string& name) {
    return GetUserAttr(name, "trapsess") == "on";
}

bool SetUserEncryption(const std::string& name, const std::string& value) {
    return Edit(kCommonUnit, [&](File& file) {
        Node user = FindUser(file, name);
        if (value == "off" && user.GetAttr("encryption") == "off") {
            PrintInfo("Privacy key for user %s is already OFF", name);
            return false;
        }
        return user.SetAttr("encryption", value) || Refuse("Failed to set encryption for user %s", name);
    });
}

bool SetUserRead(const std::string& name, const std::string& value) {
    return Edit(kCommonUnit, [&](File& file) {
        Node user = FindUser(file, name);
        return !user || user.SetAttr("read", value);
    });
}

bool DeleteUser(const std::string& name) {
    return Edit(kCommonUnit, [&](File& file) { return FindUser(file, name).Remove(); });
}

std::vector<Trapsess> ListUserTrapsess(const std::string& name) {
    return Read(kCommonUnit, [&](const File& file) { return ReadReceivers(FindUser(file, name)); });
}

std::vector<std::string> ListUserTrapsessDestinations(const std::string& name) {
    std::vector<std::string> destinations;
    for (Trapsess& trapsess : ListUserTrapsess(name))
        destinations.push_back(std::move(trapsess.destination));
    return destinations;
}

bool AddUserTrapsess(const std::string& name, const std::string& destination, const std::string& prot,
                     unsigned long port, const std::string& type) {
    return Edit(kCommonUnit, [&](File& file) {
        Node user = FindUser(file, name);
        if (!CheckNewTrapsess(user, name, {destination, std::to_string(port), prot, type}, port))
            return false;
        return user.AddChild("trapsess")
                   .NewAttr("destination", destination)
                   .NewAttr("port", "%lu", port)
                   .NewAttr("prot", prot)
                   .NewAttr("type", type) ||
               Refuse("Failed to add trapsess with destination %s for user %s", destination, name);
    });
}

bool DeleteUserTrapsess(const std::string& name, const Trapsess& trapsess) {
    return Edit(kCommonUnit, [&](File& file) {
        Node node = FindTrapsess(file, name, trapsess);
        if (!node) {
            PrintInfo("No such trapsess found");
            return false;
        }
        return node.Remove() || Refuse("Failed to delete trapsess with destination %s for user %s",
                                       trapsess.destination, name);
    });
}

bool AnyUserHasTrapsess() {
    return Read(kCommonUnit,
                [](const File& file) { return !file.Select("/unit/agent/user/trapsess").IsEmpty(); });
}

} // namespace snmp
