#include "platform/messages.h"
#include "shell/families.h"
#include "shell/secret.h"
#include "shell/snmp_view.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/communities.h"
#include "units/snmp/settings_access.h"
#include "units/snmp/trapsinks.h"
#include "units/snmp/unit.h"
#include "units/snmp/users.h"

#include <algorithm>
#include <optional>

namespace shell {
namespace {

using namespace snmp;
using Text = const std::string&;

bool IsAmong(const std::vector<std::string>& names, Text name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// No value, reported, when the settings can't be read.
std::optional<bool> HasUser(Text name) {
    SettingsFile file(kCommonUnit);
    if (!LoadSettings(file))
        return std::nullopt;
    const std::vector<UserEntry> users = ListUserEntries(file);
    return std::any_of(users.begin(), users.end(),
                       [&](const UserEntry& entry) { return entry.user.name == name; });
}

// Two of one name could not be told apart.
bool IsUserFree(Text name) {
    const std::optional<bool> has_user = HasUser(name);
    return has_user && (!*has_user || Refuse("user %s already exists", name));
}

bool IsCommunityFree(Text name) {
    return !IsAmong(ListCommunities(), name) || Refuse("community %s already exists", name);
}

// Before somebody types a secret for a user who is not there.
bool IsUserThere(Text name) {
    const std::optional<bool> has_user = HasUser(name);
    return has_user && (*has_user || Refuse("user %s does not exist", name));
}

bool AddUserWithPassword(Text name, Text auth_type) {
    std::string password;
    return IsUserFree(name) && AskSecret("password", password) && AddUser(name, password, auth_type);
}

bool ChangePassword(Text name) {
    std::string password;
    return IsUserThere(name) && AskSecret("password", password) && SetUserPassword(name, password);
}

// Encryption needs the key that it is switched on with.
bool Encrypt(Text name) {
    std::string key;
    return IsUserThere(name) && AskSecret("privacy key", key) && SetUserPrivKey(name, key) &&
           SetUserEncryption(name, "on");
}

// Receivers go before communities, which may come later.
bool AddReceiver(Text kind, Text destination, Text port, Text protocol, Text community) {
    if (!IsAmong(ListCommunities(), community))
        PrintWarning("community %s is not there, and reads nothing until it is added", community);
    return AddTrapsink(destination, community, kind, port, protocol);
}

// By the word that it was added with, or the one that the settings have for it.
bool DeleteReceiver(Text word, Text destination, Text port, Text protocol, Text community) {
    const std::string type = TypeOfKind(word);
    return DeleteTrapsink(destination, port, protocol, community, type.empty() ? word : type);
}

bool DontEncrypt(Text name) {
    return SetUserEncryption(name, "off") && DeleteUserPrivKey(name);
}

constexpr Command kCommands[] = {
    {"snmp", "the SNMP agent"},
    {"snmp show", "shows the settings, without passwords and keys", kCall<&ShowSnmpSettings>, kShows},
    {"snmp generate", "writes the daemon's files from the settings", [] { return SnmpAgentUnit(nullptr); }},
    {"snmp autostart <on|off>", "says whether the daemon starts with the appliance", kCall<&SetAutostart>},
    {"snmp log-level <debug|info|error|critical|off>", "sets what is logged", kCall<&SetLogLevel>},
    {"snmp port <1..65535> <udp|tcp>", "sets where the daemon listens", kCall<&SetPort>},
    {"snmp system", "what the appliance says of itself"},
    {"snmp system name <text>", "sets this node's name", kCall<&SetSysName>},
    {"snmp system contact <text>", "sets who is to be asked", kCall<&SetSysContact>},
    {"snmp system location <text>", "sets this node's place", kCall<&SetSysLocation>},
    {"snmp v2", "SNMPv1 and SNMPv2c"},
    {"snmp v2 reading <on|off>", "lets communities read", kCall<&SetV2Mode>},
    {"snmp v2 traps", "traps by SNMPv1 and SNMPv2c"},
    {"snmp v2 traps on", "sends traps", kCall<&EnableV2Traps>},
    {"snmp v2 traps off", "sends no traps", kCall<&DisableV2Traps>},
    {"snmp v3", "SNMPv3"},
    {"snmp v3 reading <on|off>", "lets users read", kCall<&SetV3Mode>},
    {"snmp v3 traps", "traps by SNMPv3"},
    {"snmp v3 traps on", "sends traps", kCall<&EnableV3Traps>},
    {"snmp v3 traps off", "sends no traps", kCall<&DisableV3Traps>},
    {"snmp community", "communities that may read"},
    {"snmp community add <word>", "adds a community",
     [](Text name) { return IsCommunityFree(name) && AddCommunity(name); }},
    {"snmp community rename <community> <word>", "gives a community another name",
     [](Text name, Text new_name) { return IsCommunityFree(new_name) && RenameCommunity(name, new_name); }},
    {"snmp community delete <community>", "removes a community", kCall<&DeleteCommunity>},
    {"snmp trap-receiver", "receivers of SNMPv1 and SNMPv2c traps"},
    {"snmp trap-receiver add <v1|v2|inform> <server> <1..65535> <udp|tcp> community <community>",
     "adds a receiver, of which there are 16 at most", kCall<&AddReceiver>},
    {"snmp trap-receiver delete <v1|v2|inform|trapsink|trap2sink|informsink> <receiver> <1..65535> <udp|tcp> "
     "community <community>",
     "removes a receiver, by the words that it was added with or those of snmp show", kCall<&DeleteReceiver>},
    {"snmp user", "SNMPv3 users and their trap receivers"},
    {"snmp user add <word> <md5|sha>", "adds a user who may read, and asks for the password",
     kCall<&AddUserWithPassword>},
    {"snmp user delete <user>", "removes a user",
     [](Text name) { return IsUserThere(name) && DeleteUser(name); }},
    {"snmp user rename <user> <word>", "gives a user another name",
     [](Text name, Text new_name) {
         return IsUserThere(name) && IsUserFree(new_name) && RenameUser(name, new_name);
     }},
    {"snmp user password <user>", "asks for a new password", kCall<&ChangePassword>},
    {"snmp user authentication <user> <md5|sha>", "sets how the user is authenticated",
     kCall<&SetUserAuthType>},
    {"snmp user encryption", "privacy of the user's messages"},
    {"snmp user encryption <user> on", "asks for the privacy key, and encrypts", kCall<&Encrypt>},
    {"snmp user encryption <user> off", "doesn't encrypt any more, and forgets the key", kCall<&DontEncrypt>},
    {"snmp user reading <user> <on|off>", "says whether the user may read", kCall<&SetUserRead>},
    {"snmp user traps <user> <on|off>", "says whether traps are sent to the user's receivers",
     kCall<&SetUserTrapsess>},
    {"snmp user receiver", "trap receivers of a user"},
    {"snmp user receiver add <user> <trap|inform> <server> <1..65535> <udp|tcp>", "adds a receiver",
     [](Text user, Text type, Text destination, unsigned long port, Text protocol) {
         return AddUserTrapsess(user, destination, protocol, port, type);
     }},
    {"snmp user receiver delete <user> <trap|inform> <user-receiver> <1..65535> <udp|tcp>",
     "removes a receiver",
     [](Text user, Text type, Text destination, Text port, Text protocol) {
         return DeleteUserTrapsess(user, {destination, port, protocol, type});
     }},
    {"snmp cluster", "monitoring of the two nodes of a cluster"},
    {"snmp cluster monitoring <on|off>", "lets the nodes monitor each other", kCall<&SetClusterV2Mode>},
    {"snmp cluster system-community <word>", "sets the community that the nodes use themselves",
     kCall<&SetSystemCommunity>},
    {"snmp cluster node", "nodes of the cluster"},
    {"snmp cluster node add <address> context <word> community <word>", "adds a node",
     [](Text address, Text context, Text community) {
         return AddClusterNode({address, context, community});
     }},
    {"snmp cluster node context <address> <word>", "sets a node's context", kCall<&SetClusterNodeContext>},
    {"snmp cluster node community <address> <word>", "sets a node's community",
     kCall<&SetClusterNodeCommunity>},
    {"snmp cluster node clear", "removes the two nodes", kCall<&EraseClusterNodes>},
};

} // namespace

std::span<const Command> SnmpCommands() {
    return kCommands;
}

} // namespace shell
