#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace ztv {

// One row of a text table.
struct TextRow {
    std::string where; // "file:line", the start of every message about the row
    std::vector<std::string> cells;

    // Return a cell as a number or as a flag, "yes" or "no". std::runtime_error for any other text.
    std::int32_t Integer(std::size_t column) const;
    bool Flag(std::size_t column) const;
};

// Returns the rows of a table as readable text: cells with "|" between them. The first row names the columns
// and isn't returned. Empty lines and those that begin with "#" are left out. std::runtime_error, naming the
// place, when the file can't be read or its columns aren't `columns`.
std::vector<TextRow> ReadTextTable(const std::filesystem::path &path,
                                   const std::vector<std::string_view> &columns);

// Returns the text without the blanks around it.
std::string_view Trimmed(std::string_view text);

// Returns the parts of a text between separators, each without the blanks around it.
std::vector<std::string> Split(std::string_view text, std::string_view separator);

// Returns the words of a text, which blanks separate.
std::vector<std::string> Words(std::string_view text);

} // namespace ztv
