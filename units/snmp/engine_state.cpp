#include "units/snmp/engine_state.h"

#include "platform/messages.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <utility>

namespace snmp {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSeedDirectory = "/mnt/main/var/lib/cvtk/snmp";
constexpr std::size_t kSeedLength = 12;
constexpr const char* kLetters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

bool IsSeedMissing() {
    std::error_code error;
    const fs::file_type type = fs::status(kEngineSeedFile, error).type();
    return type == fs::file_type::not_found || type == fs::file_type::none;
}

// The name and value of a line of exactly two words.
std::pair<std::string, std::string> SplitPair(const std::string& line) {
    std::istringstream words(line);
    std::string name;
    std::string value;
    std::string more;
    if (!(words >> name >> value) || words >> more)
        return {};
    return {name, value};
}

} // namespace

std::string GenerateRandomString(std::size_t length) {
    std::random_device device("default");
    std::mt19937 generator(device());
    std::string letters = kLetters;
    for (std::size_t i = letters.size() - 1; i > 0; --i)
        std::swap(letters[i], letters[std::uniform_int_distribution<std::size_t>(0, i)(generator)]);
    if (length > letters.size())
        LogInfo("Length of generated random string is less than requested");
    return letters.substr(0, length);
}

bool WriteEngineSeed(const std::string& seed) {
    std::error_code error;
    fs::create_directories(kSeedDirectory, error);
    if (error)
        return RefuseInLog("Failed to create directories of the %s path with error: %s", kSeedDirectory,
                           error.message());
    std::ofstream file(kEngineSeedFile, std::ios::trunc);
    if (!file)
        return Refuse("Failed to open seed_file %s", kEngineSeedFile);
    file << seed;
    file.close();
    if (file)
        return true;
    // A seed that is cut short must not become the engine's identity.
    fs::remove(kEngineSeedFile, error);
    return Refuse("Failed to write seed_file %s", kEngineSeedFile);
}

bool CreateEngineSeed() {
    return WriteEngineSeed(GenerateRandomString(kSeedLength));
}

std::string ObtainEngineSeed() {
    if (IsSeedMissing())
        (void)CreateEngineSeed(); // without a seed the opening below fails and says so
    std::ifstream file(kEngineSeedFile);
    std::string seed;
    if (!file)
        PrintError("Failed to open %s", kEngineSeedFile);
    else if (!(file >> seed))
        PrintError("%s holds no engine seed", kEngineSeedFile);
    return seed;
}

std::map<std::string, std::string> ReadPersistentEngineState() {
    std::ifstream file(kPersistentFile);
    if (!file) {
        PrintError("Failed to open %s", kPersistentFile);
        return {};
    }
    std::map<std::string, std::string> state;
    std::string line;
    while (std::getline(file, line)) {
        const auto [name, value] = SplitPair(line);
        if (name == "engineBoots" || name == "oldEngineID")
            state[name] = value;
    }
    return state;
}

std::string GetOldEngineId() {
    return ReadPersistentEngineState()["oldEngineID"];
}

} // namespace snmp
