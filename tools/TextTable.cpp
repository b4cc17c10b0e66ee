#include "tools/TextTable.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace ztv {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string Quoted(std::string_view text) {
    return std::string(1, '"').append(text).append(1, '"');
}

// Verifies that a table's first row names its columns, each at its place.
void CheckColumns(const TextRow &header, const std::vector<std::string_view> &columns) {
    for (const std::string &name : header.cells) {
        if (std::find(columns.begin(), columns.end(), name) == columns.end()) {
            throw std::runtime_error(header.where + ": there is no column " + Quoted(name));
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i >= header.cells.size() || header.cells[i] != columns[i]) {
            throw std::runtime_error(header.where + ": column " + std::to_string(i + 1) + " must be " +
                                     Quoted(columns[i]));
        }
    }
    if (header.cells.size() > columns.size()) {
        throw std::runtime_error(header.where + ": column " + Quoted(header.cells.back()) + " stands twice");
    }
}

} // namespace

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (auto at = text.find(separator); at != std::string_view::npos; at = text.find(separator)) {
        parts.emplace_back(Trimmed(text.substr(0, at)));
        text.remove_prefix(at + separator.size());
    }
    parts.emplace_back(Trimmed(text));
    return parts;
}

std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words = Split(Trimmed(text), " ");
    std::erase(words, "");
    return words;
}

std::int32_t TextRow::Integer(std::size_t column) const {
    const std::string &text = cells[column];
    std::int32_t result = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw std::runtime_error(where + ": " + Quoted(text) + " is not a whole number of 32 bits");
    }
    return result;
}

bool TextRow::Flag(std::size_t column) const {
    const std::string &text = cells[column];
    if (text != "yes" && text != "no") {
        throw std::runtime_error(where + ": " + Quoted(text) + " is neither \"yes\" nor \"no\"");
    }
    return text == "yes";
}

std::vector<TextRow> ReadTextTable(const std::filesystem::path &path,
                                   const std::vector<std::string_view> &columns) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error(path.string() + ": can't be opened");
    }

    std::vector<TextRow> rows;
    bool headerRead = false;
    std::string text;
    for (int line = 1; std::getline(file, text); ++line) {
        const std::string_view content = Trimmed(text);
        if (content.empty() || content.front() == '#') {
            continue;
        }
        TextRow row{path.string() + ":" + std::to_string(line), Split(content, "|")};
        if (std::any_of(content.begin(), content.end(), [](char c) { return c < ' ' || c > '~'; })) {
            throw std::runtime_error(row.where + ": only printable ASCII characters are allowed");
        }
        if (!headerRead) {
            CheckColumns(row, columns);
            headerRead = true;
            continue;
        }
        if (row.cells.size() != columns.size()) {
            throw std::runtime_error(row.where + ": " + std::to_string(row.cells.size()) + " columns where " +
                                     std::to_string(columns.size()) + " are wanted");
        }
        rows.push_back(std::move(row));
    }
    if (file.bad() || !headerRead) {
        throw std::runtime_error(path.string() + ": can't be read, or names no columns");
    }
    return rows;
}

} // namespace ztv
