#include "tests/support/files.h"

#include "tests/support/processes.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/stat.h>

namespace support {

namespace fs = std::filesystem;

void WriteFile(const std::string& path, const std::string& text, mode_t mode) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    EXPECT_TRUE(file && chmod(path.c_str(), mode) == 0) << "cannot write " << path;
}

void WriteLink(const std::string& path, const std::string& target) {
    fs::create_directories(fs::path(path).parent_path());
    fs::remove(path);
    fs::create_symlink(target, path);
}

bool Exists(const std::string& path) {
    return fs::exists(fs::symlink_status(path));
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << "cannot read " << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

mode_t ModeOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

void ExpectGolden(const std::string& generated, const std::string& name) {
    const std::string golden = std::string(GOLDEN_FOLDER) + "/" + name;
    const char* update = std::getenv("UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
        WriteFile(golden, ReadFile(generated));
    }
    const Result difference = RunProgram({"diff", "--text", "--unified=1", golden, generated});
    EXPECT_EQ(difference.status, 0) << generated << " is not as tests/golden/" << name << " says:\n"
                                    << difference.out << difference.err;
}

} // namespace support
