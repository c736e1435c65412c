#pragma once
// The text of a profile file: "[section]" headers and "key=value" lines.
// Reading finds a key the way the platform does (names without regard to
// case, blanks around names and values dropped, one pair of quotes around a
// value dropped, the first occurrence wins). Writing changes or adds one line
// and leaves every other byte as it was: other keys, other sections,
// comments, blank lines, line ends and a leading byte-order mark.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvane {

class ProfileText {
  public:
    ProfileText() = default;
    explicit ProfileText(std::string_view text);

    // The value of `key` in `section`; nothing when the key is absent.
    std::optional<std::string> Get(std::string_view section, std::string_view key) const;
    // Sets `key` to `value` (neither may hold a line break): the first line
    // of the key is rewritten in place, or a line is added at the end of the
    // section, or the section is added at the end of the text.
    void Set(std::string_view section, std::string_view key, std::string_view value);
    std::string Text() const;

  private:
    struct Line {
        std::string text;     // as in the file, without the line break
        std::string_view brk; // "\n", "\r\n" or empty for the last line
        std::string section;  // the section the line lies in
        bool header = false;
    };
    std::optional<std::size_t> findKey(std::string_view section, std::string_view key) const;
    std::string_view lineBreak() const;

    std::string m_bom;
    std::vector<Line> m_lines;
};

} // namespace zorvane
