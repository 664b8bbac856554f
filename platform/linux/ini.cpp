#include "platform/ini.h"

#include "files.h"
#include "ini_text.h"

#include <cstring>
#include <stdexcept>

Ini::Ini(const std::string& path) {
    std::string text;
    if (const int error = linux_platform::ReadText(path, linux_platform::ini_limit, text))
        throw std::runtime_error(std::strerror(error));
    std::size_t bad_line = 0;
    for (linux_platform::IniSection& section : linux_platform::ParseIni(text, bad_line))
        for (auto& [key, value] : section.values)
            values_[{section.name, key}] = std::move(value);
    if (bad_line != 0)
        throw std::runtime_error("line " + std::to_string(bad_line) + ": no section and no value");
}

std::string Ini::Get(const std::string& section, const std::string& key) const {
    const auto value = values_.find({section, key});
    return value != values_.end() ? value->second : "";
}
