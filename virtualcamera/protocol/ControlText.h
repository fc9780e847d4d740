#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The text of the control socket: lines of words between single spaces, each value
/// percent-encoded so that it can hold any bytes.
namespace virtualcamera {

/// A request line longer than this is refused.
constexpr std::size_t kMaxRequestLine = 64UL * 1024;
/// The environment variable that names the control socket to the started program.
constexpr const char* kSocketVariable = "VIRTUALCAMERA_SOCKET";

std::string percentEncode(std::string_view bytes);
/// A '%' without two hexadecimal digits is kept as it is.
std::string percentDecode(std::string_view text);

/// Splits at spaces, drops empty words, decodes nothing.
std::vector<std::string> splitWords(std::string_view line);

using KeyValue = std::pair<std::string, std::string>;

std::string formatKeyValue(std::string_view key, std::string_view value);
/// Nothing when the word has no '='. The value is decoded.
std::optional<KeyValue> parseKeyValue(std::string_view word);

std::string toHex(const std::vector<std::uint8_t>& bytes);
std::optional<std::vector<std::uint8_t>> fromHex(std::string_view text);

} // namespace virtualcamera
