#include "shell/change_lock.h"

#include "platform/descriptor.h"
#include "platform/messages.h"
#include "platform/path_list.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace shell {
namespace {

// In a folder of its own, where nobody else can put a file first.
constexpr const char* kChangeLock = "/run/conf-shell/lock";

// Where settings stand, those of the routing daemons among them.
constexpr const char* kSettingsFolders[] = {"/mnt/main/etc", "/etc/quagga"};

// "root on pts/3, process 4711".
std::string Self() {
    const passwd* const user = ::getpwuid(::getuid());
    const char* const terminal = ::ttyname(STDIN_FILENO);
    return std::string(user != nullptr ? user->pw_name : std::to_string(::getuid())) +
           (terminal != nullptr ? " on " + std::string(terminal).substr(sizeof "/dev/" - 1) : "") +
           ", process " + std::to_string(::getpid());
}

// Who has the lock stands in its file.
void Sign() {
    const Descriptor file(::open(kChangeLock, O_WRONLY | O_TRUNC | O_NOFOLLOW | O_CLOEXEC));
    const std::string name = Self();
    // Without it the others learn less.
    [[maybe_unused]] const ssize_t written = ::write(file.Get(), name.data(), name.size());
}

std::string Holder() {
    std::string name;
    std::ifstream file(kChangeLock);
    std::getline(file, name);
    return name;
}

void AddFile(const std::string& path, std::string& state) {
    struct stat status {};
    if (path.ends_with(".lock") || ::lstat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode))
        return;
    state += path + ' ' + std::to_string(status.st_ino) + ' ' + std::to_string(status.st_mtim.tv_sec) + '.' +
             std::to_string(status.st_mtim.tv_nsec) + '\n';
}

// Every settings file with its age.
std::string StateOfSettings() {
    std::string state;
    std::error_code failure;
    for (const char* folder : kSettingsFolders) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, failure))
            AddFile(entry.path(), state);
    }
    AddFile(path_list::failover_settings, state);
    return state;
}

} // namespace

ChangeLock::ChangeLock() : lock_(kChangeLock) {}

ChangeLock::~ChangeLock() {
    shell_frame_questions(nullptr, nullptr);
}

bool ChangeLock::Acquire() {
    if (!lock_.AcquireExclusive(settings_lock_timeout, true)) {
        const std::string holder = Holder();
        if (holder.empty())
            return Refuse("%s can't be locked: nothing was changed, please try again", kChangeLock);
        return Refuse(
            "another shell is changing the settings (%s): nothing was changed here, please try again",
            holder);
    }
    Sign();
    shell_frame_questions([this] { GiveBack(); }, [this] { return TakeAgain(); });
    return true;
}

void ChangeLock::GiveBack() {
    settings_ = StateOfSettings();
    lock_.Release();
}

bool ChangeLock::TakeAgain() {
    if (!Acquire())
        return false;
    return StateOfSettings() == settings_ ||
           Refuse("settings were changed while the question stood: the answer counts as no");
}

} // namespace shell
