// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace pnotool {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// The words of a command line, sorted into places and options ("--name VALUE" or "--name=VALUE").
struct Arguments
{
    std::vector<std::string> places;
    std::map<std::string, std::string> options; ///< by name, without the dashes; flags have an empty value
    std::string problem;                        ///< what is wrong with the usage; empty when nothing

    bool has(const std::string& name) const { return options.count(name) != 0; }
    std::string text(const std::string& name) const;
    /// A whole number; sets `problem` when it is none. Not given: `fallback`.
    int integer(const std::string& name, int fallback);
    /// A number with "." as its decimal point, whatever the locale; otherwise as integer().
    double real(const std::string& name, double fallback);
    /// Two numbers parted by a comma; false, with `problem` set, when the option is given and holds anything
    /// else.
    bool pair(const std::string& name, double& first, double& second);
};

/// @param valued  options that take a value; @param flags  those that do not
Arguments parseArguments(const std::vector<std::string>& words, const std::set<std::string>& valued,
                         const std::set<std::string>& flags);

/// A whole number and nothing else.
bool parseInteger(const std::string& text, int& value);

/// Says on standard error what is wrong; returns the exit status.
int wrongUsage(const std::string& problem);
int failed(const std::string& problem);

} // namespace pnotool
