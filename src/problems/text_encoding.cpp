#include "problems/text_encoding.h"

#include <cstdint>

namespace zorvane {

namespace {

// Code points of the bytes 0x80..0xFF of Windows-1250.
constexpr char16_t WINDOWS_1250_HIGH[128] = {
    0x20AC, 0xFFFD, 0x201A, 0xFFFD, 0x201E, 0x2026, 0x2020, 0x2021, 0xFFFD, 0x2030, 0x0160, 0x2039, 0x015A,
    0x0164, 0x017D, 0x0179, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0xFFFD, 0x2122,
    0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141, 0x00A4, 0x0104, 0x00A6,
    0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B, 0x00B0, 0x00B1, 0x02DB, 0x0142,
    0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB, 0x013D, 0x02DD, 0x013E, 0x017C, 0x0154,
    0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7, 0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD,
    0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3, 0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA,
    0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF, 0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7,
    0x010D, 0x00E9, 0x0119, 0x00EB, 0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4,
    0x0151, 0x00F6, 0x00F7, 0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9,
};

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

} // namespace

std::wstring Utf8ToWide(std::string_view text) {
    std::wstring result;
    result.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            result += static_cast<wchar_t>(lead);
            ++i;
            continue;
        }
        // Length and the smallest value a sequence of that length may carry.
        size_t length = 0;
        uint32_t value = 0, minimum = 0;
        if ((lead & 0xE0) == 0xC0) {
            length = 2;
            value = lead & 0x1Fu;
            minimum = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3;
            value = lead & 0x0Fu;
            minimum = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4;
            value = lead & 0x07u;
            minimum = 0x10000;
        }
        bool valid = length != 0 && i + length <= text.size();
        for (size_t k = 1; valid && k < length; ++k) {
            const auto byte = static_cast<unsigned char>(text[i + k]);
            valid = isContinuation(byte);
            value = (value << 6) | (byte & 0x3Fu);
        }
        valid = valid && value >= minimum && value <= 0x10FFFF && !(value >= 0xD800 && value <= 0xDFFF);
        if (valid) {
            result += static_cast<wchar_t>(value);
            i += length;
        } else {
            // One replacement per bad byte; the next byte is tried as a new start.
            result += REPLACEMENT_CHARACTER;
            ++i;
        }
    }
    return result;
}

std::string WideToUtf8(std::wstring_view text) {
    std::string result;
    result.reserve(text.size());
    for (const wchar_t c : text) {
        auto value = static_cast<uint32_t>(c);
        if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) value = REPLACEMENT_CHARACTER;
        if (value < 0x80) {
            result += static_cast<char>(value);
        } else if (value < 0x800) {
            result += static_cast<char>(0xC0 | (value >> 6));
            result += static_cast<char>(0x80 | (value & 0x3F));
        } else if (value < 0x10000) {
            result += static_cast<char>(0xE0 | (value >> 12));
            result += static_cast<char>(0x80 | ((value >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (value & 0x3F));
        } else {
            result += static_cast<char>(0xF0 | (value >> 18));
            result += static_cast<char>(0x80 | ((value >> 12) & 0x3F));
            result += static_cast<char>(0x80 | ((value >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (value & 0x3F));
        }
    }
    return result;
}

std::wstring Windows1250ToWide(std::string_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        result +=
            byte < 0x80 ? static_cast<wchar_t>(byte) : static_cast<wchar_t>(WINDOWS_1250_HIGH[byte - 0x80]);
    }
    return result;
}

} // namespace zorvane
