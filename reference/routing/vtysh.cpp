// vtysh [-d DAEMON] -c LINE...
//
// Stands for the routing daemons' common terminal and for the daemons themselves. It knows the lines that the
// appliance uses; at any other it says so, and ends with status 1 without a look at the lines behind.

#include "reference/routing/daemon.h"
#include "reference/routing/store.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace reference::routing {
namespace {

struct CommandLine {
    std::string daemon = "zebra";
    std::vector<std::string> lines;
};

bool Parse(int argc, char** argv, CommandLine& line) {
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "-d")
            line.daemon = argv[i + 1];
        else if (option == "-c")
            line.lines.emplace_back(argv[i + 1]);
        else
            return false;
    }
    return argc % 2 == 1 && !line.lines.empty();
}

// One call: its lines walk through the modes of the terminal.
class Session {
public:
    // `kept` is the running configuration or, for a daemon that was not asked before, the saved one.
    Session(const Store& store, const std::string& name, const std::string& kept)
        : store_(store), name_(name), kept_(kept) {}

    // False when the line is refused; `output` gets the answer either way.
    bool Run(const std::string& line, std::string& output) {
        const Words words = Split(line);
        if (words.empty())
            return true;
        if (Equal(words, {"end"}) || Equal(words, {"exit"}))
            return Leave(words[0] == "end");
        if (Equal(words, {"write", "file"}) || Equal(words, {"write"}))
            return store_.SetSaved(Running());
        if (configuring_)
            return Changed().Configure(words);
        if (Equal(words, {"configure", "terminal"}) || Equal(words, {"conf", "t"}))
            return configuring_ = true;
        if (Equal(words, {"show", "running-config"}))
            output = Running();
        else if (Equal(words, {"show", "tables", "static"}) && name_ == "zebra")
            return ShowTables(output);
        else
            return Loaded().Show(words, output);
        return true;
    }

    // Keeps what has changed, and has the system do it.
    bool Keep() {
        if (!IsNew())
            return true;
        if (!store_.SetRunning(Loaded().Configuration(), Loaded().Tables())) {
            std::fprintf(stderr, "vtysh: failed to keep the configuration\n");
            return false;
        }
        return Loaded().Apply();
    }

private:
    bool ShowTables(std::string& output) {
        const auto tables = IsNew() ? Loaded().Tables() : store_.Tables();
        output = tables.value_or("");
        return tables.has_value();
    }

    // Whether the daemon knows more than what is kept.
    bool IsNew() const { return changed_ || !store_.HasRunning(); }

    bool Leave(bool all) {
        if (!configuring_)
            return false;
        if (!all && daemon_ && daemon_->InSection()) {
            daemon_->LeaveSection();
            return true;
        }
        if (daemon_)
            daemon_->LeaveSection();
        configuring_ = false;
        return true;
    }

    std::string Running() { return IsNew() ? Loaded().Configuration() : kept_; }

    Daemon& Changed() {
        changed_ = true;
        return Loaded();
    }

    Daemon& Loaded() {
        if (daemon_)
            return *daemon_;
        daemon_ = MakeDaemon(name_);
        LoadConfiguration(*daemon_, kept_);
        return *daemon_;
    }

    const Store& store_;
    std::string name_;
    std::string kept_;
    std::unique_ptr<Daemon> daemon_; // when a line has needed it
    bool configuring_ = false;
    bool changed_ = false;
};

int Main(const CommandLine& line) {
    if (!MakeDaemon(line.daemon)) {
        std::fprintf(stderr, "vtysh: no daemon %s\n", line.daemon.c_str());
        return 1;
    }
    const Store store(line.daemon);
    if (!store.IsLocked() || !store.IsRunning()) {
        std::fprintf(stderr, "Exiting: failed to connect to any daemons.\n");
        return 1;
    }
    const auto kept = store.HasRunning() ? store.Running() : store.Saved();
    if (!kept)
        return 1;
    Session session(store, line.daemon, *kept);
    bool done = true;
    for (const std::string& command : line.lines) {
        std::string output;
        done = session.Run(command, output);
        if (!done && output.empty())
            output = "% Unknown command.\n";
        std::fwrite(output.data(), 1, output.size(), stdout);
        if (!done)
            break;
    }
    const bool in_force = session.Keep();
    return done && in_force && std::fflush(stdout) == 0 ? 0 : 1;
}

} // namespace
} // namespace reference::routing

int main(int argc, char** argv) {
    reference::routing::CommandLine line;
    if (!reference::routing::Parse(argc, argv, line)) {
        std::fprintf(stderr, "usage: vtysh [-d DAEMON] -c LINE...\n");
        return 1;
    }
    return reference::routing::Main(line);
}
