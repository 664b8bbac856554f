#include "commands/failover/edit_signals.h"

#include "platform/processes.h"

#include <csignal>
#include <cstdio>
#include <iterator>

namespace failover {
namespace {

constexpr int kSignals[] = {SIGHUP, SIGTERM, SIGINT};

volatile std::sig_atomic_t come = 0; // the first signal, 0 before
struct sigaction previous[std::size(kSignals)];

void Take(int signal, siginfo_t* info, void*) {
    const bool is_key = signal == SIGINT && info->si_code == SI_KERNEL;
    if (is_key)
        return;
    if (come == 0)
        come = signal;
    shell_end_program();
}

} // namespace

EditSignals::EditSignals() {
    come = 0;
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        struct sigaction action {};
        action.sa_sigaction = Take;
        action.sa_flags = SA_SIGINFO;
        sigaction(kSignals[i], &action, &previous[i]);
        if (previous[i].sa_handler == SIG_IGN)
            sigaction(kSignals[i], &previous[i], nullptr);
    }
}

EditSignals::~EditSignals() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i)
        sigaction(kSignals[i], &previous[i], nullptr);
    if (!HaveCome())
        return;
    std::fflush(stdout); // the signal may end the process here
    (void)raise(come);
}

bool EditSignals::HaveCome() {
    return come != 0;
}

} // namespace failover
