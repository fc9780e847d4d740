#include "ControlText.h"

#include <algorithm>

namespace virtualcamera {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

bool isPlain(unsigned char byte)
{
    const bool alphanumeric = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                              (byte >= 'a' && byte <= 'z');
    return alphanumeric || byte == '.' || byte == '-' || byte == '_' || byte == '/' || byte == ':';
}

int digitValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

/// The value of two hexadecimal digits, or -1.
int byteValue(char high, char low)
{
    const int upper = digitValue(high);
    const int lower = digitValue(low);
    return upper < 0 || lower < 0 ? -1 : upper * 16 + lower;
}

} // namespace

std::string percentEncode(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (isPlain(byte)) {
            text += character;
        } else {
            text += '%';
            text += kDigits[byte >> 4U];
            text += kDigits[byte & 0xFU];
        }
    }
    return text;
}

std::string percentDecode(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '%' && i + 2 < text.size();
        const int value = isEscape ? byteValue(text[i + 1], text[i + 2]) : -1;
        if (value < 0) {
            bytes += text[i];
        } else {
            bytes += static_cast<char>(value);
            i += 2;
        }
    }
    return bytes;
}

std::vector<std::string> splitWords(std::string_view line)
{
    std::vector<std::string> words;
    std::size_t start = 0;
    while (start < line.size()) {
        const std::size_t end = std::min(line.find(' ', start), line.size());
        if (end > start)
            words.emplace_back(line.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

std::string formatKeyValue(std::string_view key, std::string_view value)
{
    return std::string(key) + '=' + percentEncode(value);
}

std::optional<KeyValue> parseKeyValue(std::string_view word)
{
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos)
        return std::nullopt;
    return KeyValue(word.substr(0, equals), percentDecode(word.substr(equals + 1)));
}

std::string toHex(const std::vector<std::uint8_t>& bytes)
{
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xFU];
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> fromHex(std::string_view text)
{
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int value = byteValue(text[i], text[i + 1]);
        if (value < 0)
            return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

} // namespace virtualcamera
