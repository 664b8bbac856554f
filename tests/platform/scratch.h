#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

// A folder of its own for each test case.
class Scratch : public ::testing::Test {
protected:
    Scratch() {
        std::string name = (std::filesystem::temp_directory_path() / "platform.XXXXXX").string();
        folder_ = ::mkdtemp(name.data());
    }
    ~Scratch() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return folder_ + "/" + name; }
    static void write(const std::string& path, const std::string& text) { std::ofstream(path) << text; }
    static std::string read(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    std::string folder_;
};
