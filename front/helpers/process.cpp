#include "front/helpers/process.h"

#include "platform/messages.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* kPath = "/usr/sbin:/usr/bin:/sbin:/bin";
constexpr mode_t kFileMask = 022;

// open(2) gives the lowest number that is free.
void OpenStandardStreams() {
    int descriptor = -1;
    do
        descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor >= 0)
        close(descriptor);
}

} // namespace

void StartProcess() {
    OpenStandardStreams();
    umask(kFileMask);
    setenv("PATH", kPath, 1);
    for (const int number : {SIGPIPE, SIGXFSZ})
        std::signal(number, SIG_IGN);
}

bool FlushOutput() {
    if (std::fflush(stdout) != 0) { // std::cout holds nothing back itself
        if (errno != EPIPE)
            PrintError("failed to write to standard output: %s", std::strerror(errno));
        __fpurge(stdout); // it is told once
    }
    return std::ferror(stdout) == 0 && std::cout.good();
}
