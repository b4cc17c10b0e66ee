#include "tools/RoleHeader.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace ztv {

namespace {

namespace fs = std::filesystem;

std::string Constant(std::string_view type, const std::string &name, std::int32_t value,
                     const std::string &comment) {
    return "inline constexpr std::" + std::string(type) + " " + name + " = " + std::to_string(value) +
           "; // " + comment + "\n";
}

std::string RolesOf(const NamedValue &named) {
    std::string roles;
    for (const std::string &role : named.roles) {
        roles += (roles.empty() ? "of " : " and ") + role;
    }
    return roles;
}

} // namespace

std::string RoleHeader(const SensorTable &table, std::string_view nameSpace) {
    std::string text = "// Generated from the parameter table by build-presets; change the table instead.\n"
                       "#pragma once\n\n#include <cstdint>\n\nnamespace ";
    text += nameSpace;
    text += " {\n\n// The parameters that the code itself uses. All other rows are described by the presets "
            "alone.\n";
    for (const Parameter &p : table.Parameters()) {
        if (!p.role.empty()) {
            text += Constant("int16_t", p.role, p.number, p.name);
        }
    }
    text += "\n// Values with a meaning of their own.\n";
    for (const NamedValue &named : table.Values()) {
        text += Constant("int32_t", named.name, named.value, RolesOf(named));
    }
    text += "\n} // namespace ";
    text += nameSpace;
    return text + "\n";
}

void WriteIfChanged(const fs::path &path, const std::string &text) {
    if (std::ifstream old(path, std::ios::binary);
        old && std::string(std::istreambuf_iterator<char>(old), {}) == text) {
        return;
    }
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error(path.string() + ": can't be written");
    }
}

} // namespace ztv
