// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/Arguments.h"

#include <charconv>
#include <cstdio>

namespace pnotool {
namespace {

template <class Number>
bool parseWhole(const std::string& text, Number& value)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

} // namespace

bool parseInteger(const std::string& text, int& value)
{
    return parseWhole(text, value);
}

std::string Arguments::text(const std::string& name) const
{
    const auto found = options.find(name);
    return found == options.end() ? std::string() : found->second;
}

int Arguments::integer(const std::string& name, int fallback)
{
    int value = fallback;
    if (has(name) && !parseWhole(text(name), value))
        problem = "--" + name + " wants a whole number, not \"" + text(name) + "\"";
    return value;
}

double Arguments::real(const std::string& name, double fallback)
{
    double value = fallback;
    if (has(name) && !parseWhole(text(name), value))
        problem = "--" + name + " wants a number, not \"" + text(name) + "\"";
    return value;
}

bool Arguments::pair(const std::string& name, double& first, double& second)
{
    if (!has(name)) return true;
    const std::string value = text(name);
    const std::size_t comma = value.find(',');
    if (comma != std::string::npos && parseWhole(value.substr(0, comma), first) &&
        parseWhole(value.substr(comma + 1), second))
        return true;
    problem = "--" + name + " wants two numbers parted by a comma, not \"" + value + "\"";
    return false;
}

Arguments parseArguments(const std::vector<std::string>& words, const std::set<std::string>& valued,
                         const std::set<std::string>& flags)
{
    Arguments arguments;
    bool optionsOver = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (optionsOver || word.compare(0, 2, "--") != 0) {
            arguments.places.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsOver = true;
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(2, equals == std::string::npos ? equals : equals - 2);
        if (flags.count(name) != 0 && equals == std::string::npos) {
            arguments.options[name] = "";
        } else if (valued.count(name) != 0 && equals != std::string::npos) {
            arguments.options[name] = word.substr(equals + 1);
        } else if (valued.count(name) != 0 && i + 1 < words.size()) {
            arguments.options[name] = words[++i];
        } else {
            arguments.problem =
                valued.count(name) != 0 ? word + " wants a value" : word + " is not known here";
            return arguments;
        }
    }
    return arguments;
}

int wrongUsage(const std::string& problem)
{
    std::fprintf(stderr, "pnotool: %s (pnotool --help tells the usage)\n", problem.c_str());
    return kWrongUsage;
}

int failed(const std::string& problem)
{
    std::fprintf(stderr, "pnotool: %s\n", problem.c_str());
    return kFailed;
}

} // namespace pnotool
