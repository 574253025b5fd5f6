// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Who may upload: accounts with slow salted hashes, wrong tries counted by the day, tokens with an end.

#pragma once

#include "companions/albumd/Database.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace albumd {

/// Seconds since 1970, UTC.
using Clock = std::function<std::int64_t()>;
std::int64_t systemClock();

struct Account
{
    std::int64_t id = 0;
    std::string email;
    std::int64_t quota = 0; ///< bytes
};

constexpr int kTriesPerDay = 3;
constexpr std::int64_t kDefaultQuota = 20LL << 30;

/// May be used from several threads at once. Passwords are neither kept nor told to anybody.
class Accounts
{
public:
    /// @param tokenLife_s  how long a token is good for
    Accounts(Database& database, std::int64_t tokenLife_s, Clock clock = systemClock);

    /// @param error  why not, when false is returned
    [[nodiscard]] bool add(std::string_view email, std::string_view password, std::int64_t quota,
                           std::string* error);

    /// Also ends the account's tokens and forgives its wrong tries.
    [[nodiscard]] bool setPassword(std::string_view email, std::string_view password, std::string* error);

    struct Login
    {
        enum Result
        {
            Welcome,
            Wrong,  ///< or no tries left today; `triesLeft` says which
            Busy,   ///< too many logins at once
            Failed, ///< the database
        };
        Result result = Failed;
        int triesLeft = 0;
        std::string token; ///< 64 hexadecimal digits
        Account account;
    };

    /// An address without an account is answered as one with a wrong password, in about the same time.
    Login login(std::string_view email, std::string_view password);

    /// Whose token it is; none when it is unknown or at its end.
    std::optional<Account> owner(std::string_view token);

    /// Empty when there is no such account.
    std::string email(std::int64_t id);

    std::int64_t tokenLife() const { return m_tokenLife_s; }

private:
    std::int64_t today() const; ///< number of the local day
    bool noteWrongTry(const std::string& who, std::int64_t day, std::int64_t count);

    Database& m_database;
    std::int64_t m_tokenLife_s;
    Clock m_clock;
    std::mutex m_oneLogin; ///< the hash takes 64 MiB, and tries are counted one after the other
    std::atomic<int> m_waiting{0};
    std::string m_nobody; ///< hash of a password that nobody has
};

} // namespace albumd
