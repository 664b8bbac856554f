#include "front/file_protection.h"
#include "front/helpers/process.h"
#include "front/helpers/xml.h"
#include "front/unit_dispatch.h"
#include "platform/messages.h"
#include "platform/startup.h"
#include "records/default_settings.h"
#include "settings/file.h"

#include <cstring>
#include <getopt.h>

namespace {

constexpr char kProgram[] = "conf-tool";

constexpr option kOptions[] = {
    {"apply", required_argument, nullptr, 'a'},
    {"generate", no_argument, nullptr, 'g'},
    {"protect", required_argument, nullptr, 'p'},
    {"settings", required_argument, nullptr, 's'},
    {nullptr, 0, nullptr, 0},
};

// The leading colon tells a missing argument (":") from an unknown option ("?").
constexpr char kShortOptions[] = ":a:gp:s:";

// The text of -a is a printf format with nothing to fill its conversions, so that a literal "%" is written
// "%%". Kept: scripts write it so. Any other conversion would read what is not there and is refused.
bool NeedsArguments(const char* format) {
    for (const char* sign = std::strchr(format, '%'); sign != nullptr; sign = std::strchr(sign + 2, '%')) {
        if (sign[1] != '%')
            return true;
    }
    return false;
}

bool Apply(const char* format) {
    if (NeedsArguments(format))
        return Refuse("unit://%s: failed to parse unit URI", format);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
    return ApplyUnitUri(format);
#pragma GCC diagnostic pop
}

// One option of the command line. False ends the run.
bool RunOption(int letter) {
    switch (letter) {
    case 'a':
        return Apply(optarg);
    case 'g':
        return corvanshell::GenerateDefaults();
    case 'p':
        return ProtectFile(optarg);
    case 's':
        settings::SetDirectory(optarg);
        return true;
    case ':':
        return optopt == 'p' && ProtectAllSettings();
    default:
        return false;
    }
}

bool RunOptions(int argc, char** argv) {
    opterr = 0;
    for (;;) {
        const int letter = getopt_long(argc, argv, kShortOptions, kOptions, nullptr);
        if (letter == -1)
            return true;
        if (!RunOption(letter))
            return false;
    }
}

} // namespace

int main(int argc, char** argv) {
    StartProcess();
    if (argc == 1)
        return 1;
    slopen(kProgram, 9, 8);
    bool done = false;
    {
        ClUnilogKeeper keeper;
        keeper.Init(kProgram, ClUnilogDefaultLevel(), 6);
        ClUnilogFlush("", "syslog:user.info", ClUnilogDefaultLevel());
        TOO::ErrorInit();
        InitCSPShort();
        InitXml();
        done = RunOptions(argc, argv);
        // Operands make the run fail, but only after every option has been run.
        done = done && optind == argc;
        done = FlushOutput() && done;
        CleanupXml();
        TOO::ErrorFini();
        slclose();
    }
    return done ? 0 : 1;
}
