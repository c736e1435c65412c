#include "options/profile_text.h"

#include <algorithm>

namespace zorvane {
namespace {

constexpr std::string_view UTF8_BOM = "\xEF\xBB\xBF";

std::string_view trim(std::string_view s) {
    constexpr std::string_view blanks = " \t\r\v\f";
    const std::size_t first = s.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(blanks) - first + 1);
}

bool sameName(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

// The name of a "[name]" line: up to the closing bracket, or to the end of
// the line when it has none.
std::string sectionName(std::string_view trimmed) {
    std::string_view name = trimmed.substr(1);
    name = name.substr(0, name.find(']'));
    return std::string(trim(name));
}

std::string_view keyOf(std::string_view line) {
    const std::size_t eq = line.find('=');
    return eq == std::string_view::npos ? std::string_view{} : trim(line.substr(0, eq));
}

std::string_view valueOf(std::string_view line) {
    std::string_view value = trim(line.substr(line.find('=') + 1));
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    return value;
}

} // namespace

ProfileText::ProfileText(std::string_view text) {
    if (text.substr(0, UTF8_BOM.size()) == UTF8_BOM) {
        m_bom = std::string(UTF8_BOM);
        text.remove_prefix(UTF8_BOM.size());
    }
    std::string section;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        Line line;
        line.text = text.substr(0, end);
        if (end != std::string_view::npos) {
            line.brk = "\n";
            if (!line.text.empty() && line.text.back() == '\r') {
                line.text.pop_back();
                line.brk = "\r\n";
            }
            text.remove_prefix(end + 1);
        } else {
            text = {};
        }
        const std::string_view trimmed = trim(line.text);
        if (!trimmed.empty() && trimmed.front() == '[') {
            section = sectionName(trimmed);
            line.header = true;
        }
        line.section = section;
        m_lines.push_back(std::move(line));
    }
}

std::optional<std::size_t> ProfileText::findKey(std::string_view section, std::string_view key) const {
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const Line& line = m_lines[i];
        if (line.header || !sameName(line.section, section)) continue;
        const std::string_view name = keyOf(line.text);
        if (!name.empty() && sameName(name, key)) return i;
    }
    return std::nullopt;
}

std::optional<std::string> ProfileText::Get(std::string_view section, std::string_view key) const {
    const std::optional<std::size_t> i = findKey(section, key);
    if (!i) return std::nullopt;
    return std::string(valueOf(m_lines[*i].text));
}

std::string_view ProfileText::lineBreak() const {
    const bool crlf =
        std::any_of(m_lines.begin(), m_lines.end(), [](const Line& l) { return l.brk == "\r\n"; });
    return crlf ? "\r\n" : "\n";
}

void ProfileText::Set(std::string_view section, std::string_view key, std::string_view value) {
    if (const std::optional<std::size_t> i = findKey(section, key)) {
        Line& line = m_lines[*i];
        line.text = std::string(keyOf(line.text)) + "=" + std::string(value);
        return;
    }
    const std::string_view brk = lineBreak();
    Line added{std::string(key) + "=" + std::string(value), brk, std::string(section), false};

    // After the last non-blank line of the first such section, so that a key
    // joins its neighbours rather than the blank lines before the next header.
    const auto header = std::find_if(m_lines.begin(), m_lines.end(),
                                     [&](const Line& l) { return l.header && sameName(l.section, section); });
    if (header != m_lines.end()) {
        auto anchor = header;
        for (auto it = header + 1; it != m_lines.end() && !it->header; ++it)
            if (!trim(it->text).empty()) anchor = it;
        if (anchor->brk.empty()) anchor->brk = brk;
        m_lines.insert(anchor + 1, std::move(added));
        return;
    }
    if (!m_lines.empty() && m_lines.back().brk.empty()) m_lines.back().brk = brk;
    m_lines.push_back(Line{std::string("[").append(section).append("]"), brk, std::string(section), true});
    m_lines.push_back(std::move(added));
}

std::string ProfileText::Text() const {
    std::string text = m_bom;
    for (const Line& line : m_lines) {
        text += line.text;
        text += line.brk;
    }
    return text;
}

} // namespace zorvane
