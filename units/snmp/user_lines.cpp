#include "units/snmp/user_lines.h"

#include "front/helpers/text.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/daemon_lines.h"
#include "units/snmp/engine_state.h"
#include "units/snmp/users.h"

namespace snmp {
namespace {

using settings::File;

struct UserWriter {
    std::FILE* main_file;
    std::FILE* persistent_file;
    bool v3_mode;
    bool v3_traps;
};

bool IsEncrypted(const User& user) {
    return user.encryption == "on";
}

std::string Subject(const User& user) {
    return "user " + user.name;
}

bool WriteCreateUser(const UserWriter& writer, const User& user) {
    const std::string auth = ToUpper(user.auth_type);
    LogInfo("createUser %s %s%s", user.name, auth, IsEncrypted(user) ? " AES" : "");
    std::vector<Piece> line = {"createUser ", Word(user.name), " ", Word(auth), " ", Quoted(user.pass)};
    if (IsEncrypted(user))
        line.insert(line.end(), {" AES ", Quoted(user.priv_key)});
    line.emplace_back("\n");
    return WriteLine(writer.persistent_file, Subject(user), line);
}

bool WriteReader(const UserWriter& writer, const User& user) {
    return WriteLine(writer.main_file, Subject(user),
                     {"rouser ", Word(user.name), IsEncrypted(user) ? " priv\n" : " auth\n"});
}

bool WriteReceiver(const UserWriter& writer, const User& user, const Trapsess& receiver) {
    std::vector<Piece> line = {"trapsess -v 3 -u ",
                               Word(user.name),
                               IsEncrypted(user) ? " -l authPriv " : " -l authNoPriv ",
                               receiver.type == "inform" ? "-Ci -r 10 -t 600" : " ",
                               " -a ",
                               Word(ToUpper(user.auth_type)),
                               " -A ",
                               Word(user.pass),
                               " "};
    if (IsEncrypted(user))
        line.insert(line.end(), {"-x AES -X ", Word(user.priv_key)});
    line.insert(line.end(),
                {" ", Word(receiver.prot), ":", Word(receiver.destination), ":", Word(receiver.port)});
    return WriteLine(writer.main_file, Subject(user), line);
}

bool WriteUser(const UserWriter& writer, const UserEntry& entry) {
    const bool reads = entry.user.read == "on";
    if (!entry.sends_traps && !reads)
        return true;
    bool done = WriteCreateUser(writer, entry.user);
    if (writer.v3_mode && reads)
        done = WriteReader(writer, entry.user) && done;
    if (writer.v3_traps && entry.sends_traps) {
        for (const Trapsess& receiver : entry.receivers)
            done = WriteReceiver(writer, entry.user, receiver) && done;
    }
    return done;
}

} // namespace

bool WriteUsers(const File& file, std::FILE* main_file) {
    // Read before the file is opened anew, or the engine would lose its identity.
    const std::string old_engine_id = GetOldEngineId();
    const std::string engine_boots = ReadPersistentEngineState()["engineBoots"];
    Stream persistent = OpenDaemonFile(kPersistentFile, true);
    if (persistent == nullptr)
        return true; // reported, and the rest of the main file is written
    const UserWriter writer = {main_file, persistent.get(), IsOn(file, kV3Mode),
                               IsOn(file, kV3Traps) && !IsDisabledOnPassiveNode("")};
    bool done = true;
    for (const UserEntry& entry : ListUserEntries(file))
        done = WriteUser(writer, entry) && done;
    if (!engine_boots.empty())
        std::fprintf(persistent.get(), "engineBoots %s\n", engine_boots.c_str());
    if (!old_engine_id.empty())
        std::fprintf(persistent.get(), "oldEngineID %s\n", old_engine_id.c_str());
    (void)CloseDaemonFile(std::move(persistent), kPersistentFile);
    return done;
}

} // namespace snmp
