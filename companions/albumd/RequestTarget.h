// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a request asks for: the path as it was sent, and the query items.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace albumd {

/// The path is compared as it stands, without any decoding: no address of ours needs a percent sign, so that
/// nothing can be hidden in one.
class RequestTarget
{
public:
    explicit RequestTarget(std::string_view target);

    const std::string& path() const { return m_path; }

    /// The path's parts between its slashes; empty ones are kept.
    std::vector<std::string> parts() const;

    /// First item of this name, percent-decoded; "+" is itself, as uploading programs send it in a password.
    /// Empty when it is missing or is not UTF-8.
    std::string item(std::string_view name) const;

    /// An item that is a finite number.
    std::optional<double> number(std::string_view name) const;

private:
    std::string m_path;
    std::vector<std::pair<std::string, std::string>> m_items;
};

} // namespace albumd
