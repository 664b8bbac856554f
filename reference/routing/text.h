#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace reference::routing {

using Words = std::vector<std::string>;

Words Split(std::string_view line);
// The words from `first` on, with a blank between them.
std::string Join(const Words& words, std::size_t first);
bool StartsWith(const Words& words, std::initializer_list<const char*> beginning);
bool Equal(const Words& words, std::initializer_list<const char*> line);

std::optional<std::uint32_t> ToNumber(std::string_view text, std::uint32_t lowest, std::uint32_t highest);
std::optional<std::uint32_t> ToAddress(const std::string& text); // host order
std::string AddressText(std::uint32_t address);
std::string UpperCase(std::string text);
bool IsName(const std::string& text);
bool IsInterface(const std::string& text); // what the kernel takes as an interface's name

} // namespace reference::routing
