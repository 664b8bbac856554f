#include "front/probes/adapters.h"

#include "front/helpers/text.h"
#include "front/probes/system.h"
#include "platform/log.h"
#include "platform/processes.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr const char* kModemScript = "/sbin/usb-modem-device.sh";

struct ModelLimit {
    std::string_view model;
    std::string_view sub_model; // "" stands for any
    bool whole;                 // the sub-model is compared whole, otherwise it is looked for inside
    long limit;
};

// The first row that fits holds.
constexpr ModelLimit kLimits[] = {
    {"ZQ100", "ZX1", true, 8},
    {"ZQ100", "X", false, 32},
    {"ZQ50", "", false, 32},
    {"ZQRPI", "", false, 32},
};
constexpr long kDefaultLimit = 128;

bool Fits(const ModelLimit& row, const std::string& model, const std::string& sub_model) {
    if (row.model != model)
        return false;
    return row.whole ? sub_model == row.sub_model : sub_model.find(row.sub_model) != std::string::npos;
}

void LogCountFailure() {
    shell_log_error("error getting the total number of network adapters");
}

} // namespace

long CountNetworkAdapters() {
    std::string output;
    if (corvanshell::run("/sbin/ifconfig -s -a | wc -l", output) != 0) {
        LogCountFailure();
        return -std::labs(std::stol(output));
    }
    if (output.empty()) {
        LogCountFailure();
        return -1;
    }
    long lines = 0;
    if (!ParseLong(output.c_str(), &lines)) {
        LogCountFailure();
        return -2;
    }
    // One line is the header of the table. A modem that is up stands in the table already; one that will
    // come up by itself takes the header's place.
    if (shell_spawn(kModemScript, "status", "isifup", nullptr) == 0)
        return lines - 1;
    if (shell_spawn(kModemScript, "status", "autoifup", nullptr) == 0)
        return lines;
    return lines - 1;
}

long GetNetworkAdapterLimit() {
    std::istringstream words(GetPlatformLine());
    std::string marker;
    std::string model;
    std::string sub_model;
    words >> marker;
    if (marker == "Platform:")
        words >> model >> sub_model;
    for (const ModelLimit& row : kLimits) {
        if (Fits(row, model, sub_model))
            return row.limit;
    }
    return kDefaultLimit;
}

bool CanAddNetworkAdapter() {
    const long count = CountNetworkAdapters();
    return count >= 0 && count < GetNetworkAdapterLimit();
}
