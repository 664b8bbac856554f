#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

// Real programs, started by argument vector and never left behind.
namespace support {

using Arguments = std::vector<std::string>;
constexpr std::chrono::seconds kPatience{20};

struct Result {
    int status = -1; // exit status; 128 + signal; -1 when the program had to be killed after `kPatience`
    std::string out;
    std::string err;
};

[[nodiscard]] Result RunProgram(const Arguments& arguments, const std::string& input = "");
[[nodiscard]] Result RunShell(const std::string& line);

// True as soon as `condition` is, false when `limit` has passed.
[[nodiscard]] bool WaitFor(const std::function<bool()>& condition,
                           std::chrono::milliseconds limit = kPatience);

// A program that runs beside the test until this object dies; its children die with it.
class Daemon {
public:
    explicit Daemon(const Arguments& arguments, const std::string& input = "");
    ~Daemon();
    Daemon(Daemon&& other) noexcept;
    Daemon& operator=(Daemon&&) = delete;

    [[nodiscard]] pid_t Pid() const { return pid_; }
    // What it has written so far.
    [[nodiscard]] std::string Out() const;
    [[nodiscard]] std::string Err() const;
    [[nodiscard]] bool WaitForText(const std::string& text) const; // in either of the two
    // Waits for its end, for at most `limit`.
    [[nodiscard]] Result Wait(std::chrono::milliseconds limit = kPatience);

private:
    pid_t pid_;
    int out_;
    int err_;
};

// Another process that holds the flock(2) of `path` until this object dies.
[[nodiscard]] Daemon HoldLock(const std::string& path, bool exclusive);

// The far end of a veth pair, in a network namespace of its own.
class Peer {
public:
    Peer();
    [[nodiscard]] pid_t Pid() const { return keeper_.Pid(); }
    // The arguments that run a program in the namespace, for RunProgram and Daemon.
    [[nodiscard]] Arguments Inside(const Arguments& arguments) const;

private:
    Daemon keeper_;
};

// A veth pair, both ends up. The second form moves `far` into the peer's namespace.
void MakeVeth(const std::string& near, const std::string& far);
void MakeVeth(const std::string& near, const std::string& far, const Peer& peer);

// Leaves no room for another byte below `directory`: its files can be read and opened, and writing fails
// with ENOSPC.
void FillDisk(const std::string& directory);

} // namespace support
