// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Accounts.h"

#include "companions/albumd/Names.h"

#include <ctime>
#include <utility>

#include <sodium.h>

namespace albumd {
namespace {

constexpr int kMostWaitingLogins = 32;
constexpr std::int64_t kMostStrangers = 100'000; ///< addresses without an account whose tries are kept

std::string hashOf(std::string_view password)
{
    char hash[crypto_pwhash_STRBYTES];
    return crypto_pwhash_str(hash, password.data(), password.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                             crypto_pwhash_MEMLIMIT_INTERACTIVE) == 0
               ? hash
               : std::string();
}

bool matches(const std::string& hash, std::string_view password)
{
    return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

std::string hexadecimal(const unsigned char* bytes, std::size_t size)
{
    std::string text(2 * size + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes, size);
    text.pop_back();
    return text;
}

std::string newToken()
{
    unsigned char bytes[32];
    randombytes_buf(bytes, sizeof bytes);
    return hexadecimal(bytes, sizeof bytes);
}

/// Only this is stored, so that a copy of the database opens no door.
std::string fingerprint(std::string_view text)
{
    unsigned char hash[crypto_generichash_BYTES];
    crypto_generichash(hash, sizeof hash, reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                       nullptr, 0);
    return hexadecimal(hash, sizeof hash);
}

struct Counted
{
    explicit Counted(std::atomic<int>& counter)
        : count(++counter)
        , m_counter(counter)
    {}
    ~Counted() { --m_counter; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    int count;

private:
    std::atomic<int>& m_counter;
};

} // namespace

std::int64_t systemClock()
{
    return static_cast<std::int64_t>(std::time(nullptr));
}

Accounts::Accounts(Database& database, std::int64_t tokenLife_s, Clock clock)
    : m_database(database)
    , m_tokenLife_s(tokenLife_s)
    , m_clock(std::move(clock))
{}

bool Accounts::add(std::string_view email, std::string_view password, std::int64_t quota, std::string* error)
{
    if (!isEmail(email)) {
        *error = "the upload dialog takes no such e-mail address";
        return false;
    }
    if (!isPassword(password)) {
        *error = "the password needs seven characters, a letter and a digit among them";
        return false;
    }
    const std::string hash = hashOf(password);
    if (hash.empty()) {
        *error = "no memory for the password's hash";
        return false;
    }
    const std::lock_guard<std::mutex> guard(m_database.lock);
    {
        Query known(m_database, "SELECT id FROM users WHERE email = ?");
        if (known.bind(lowered(email)).row()) {
            *error = "there is an account for this address already";
            return false;
        }
    }
    Query query(m_database, "INSERT INTO users(email, hash, quota) VALUES(?, ?, ?)");
    if (query.bind(lowered(email)).bind(hash).bind(quota).run()) return true;
    *error = m_database.error();
    return false;
}

bool Accounts::setPassword(std::string_view email, std::string_view password, std::string* error)
{
    if (!isPassword(password)) {
        *error = "the password needs seven characters, a letter and a digit among them";
        return false;
    }
    const std::string who = lowered(email);
    const std::string hash = hashOf(password);
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Transaction transaction(m_database);
    std::int64_t id = 0;
    {
        Query known(m_database, "SELECT id FROM users WHERE email = ?");
        if (!known.bind(who).row()) {
            *error = "there is no account for this address";
            return false;
        }
        id = known.integer(0);
    }
    if (!hash.empty() &&
        Query(m_database, "UPDATE users SET hash = ? WHERE id = ?").bind(hash).bind(id).run() &&
        Query(m_database, "DELETE FROM tokens WHERE user = ?").bind(id).run() &&
        Query(m_database, "DELETE FROM wrong_tries WHERE who = ?").bind(fingerprint(who)).run() &&
        transaction.commit())
        return true;
    *error = m_database.error();
    return false;
}

std::int64_t Accounts::today() const
{
    const std::time_t now = static_cast<std::time_t>(m_clock());
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return (local.tm_year + 1900) * 1000LL + local.tm_yday;
}

bool Accounts::noteWrongTry(const std::string& who, std::int64_t day, std::int64_t count)
{
    Query query(m_database, "INSERT INTO wrong_tries(who, day, count) VALUES(?, ?, ?) "
                            "ON CONFLICT(who) DO UPDATE SET day = excluded.day, count = excluded.count");
    return query.bind(who).bind(day).bind(count).run();
}

Accounts::Login Accounts::login(std::string_view email, std::string_view password)
{
    Login answer;
    const Counted waiting(m_waiting);
    if (waiting.count > kMostWaitingLogins) {
        answer.result = Login::Busy;
        return answer;
    }
    const std::lock_guard<std::mutex> oneLogin(m_oneLogin);
    const std::string address = lowered(email.substr(0, 255));
    const std::string who = fingerprint(address);
    const std::int64_t day = today();
    std::string hash;
    std::int64_t wrong = 0;
    std::int64_t strangers = 0;
    {
        const std::lock_guard<std::mutex> guard(m_database.lock);
        Query user(m_database, "SELECT id, hash, quota FROM users WHERE email = ?");
        if (user.bind(address).row()) {
            answer.account = {user.integer(0), address, user.integer(2)};
            hash = user.text(1);
        }
        if (user.failed() || !Query(m_database, "DELETE FROM wrong_tries WHERE day <> ?").bind(day).run())
            return answer;
        Query tries(m_database, "SELECT count FROM wrong_tries WHERE who = ?");
        if (tries.bind(who).row()) wrong = tries.integer(0);
        Query known(m_database, "SELECT COUNT(*) FROM wrong_tries");
        if (known.row()) strangers = known.integer(0);
    }
    answer.result = Login::Wrong;
    if (wrong >= kTriesPerDay) return answer; // the right password does not help until tomorrow
    if (hash.empty() && m_nobody.empty()) m_nobody = hashOf(newToken());
    const bool right = matches(hash.empty() ? m_nobody : hash, password) && !hash.empty();

    const std::lock_guard<std::mutex> guard(m_database.lock);
    if (!right) {
        answer.triesLeft = static_cast<int>(kTriesPerDay - wrong - 1);
        const bool keep = !hash.empty() || wrong > 0 || strangers < kMostStrangers;
        if (keep && !noteWrongTry(who, day, wrong + 1)) answer.result = Login::Failed;
        return answer;
    }
    answer.token = newToken();
    const std::int64_t now = m_clock();
    const bool kept = Query(m_database, "DELETE FROM tokens WHERE ends <= ?").bind(now).run() &&
                      Query(m_database, "INSERT INTO tokens(hash, user, ends) VALUES(?, ?, ?)")
                          .bind(fingerprint(answer.token))
                          .bind(answer.account.id)
                          .bind(now + m_tokenLife_s)
                          .run();
    answer.result = kept ? Login::Welcome : Login::Failed;
    return answer;
}

std::string Accounts::email(std::int64_t id)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database, "SELECT email FROM users WHERE id = ?");
    return query.bind(id).row() ? query.text(0) : std::string();
}

std::optional<Account> Accounts::owner(std::string_view token)
{
    if (token.size() != 64) return std::nullopt;
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database,
                "SELECT users.id, users.email, users.quota FROM tokens JOIN users ON users.id = user "
                "WHERE tokens.hash = ? AND ends > ?");
    if (!query.bind(fingerprint(token)).bind(m_clock()).row()) return std::nullopt;
    return Account{query.integer(0), query.text(1), query.integer(2)};
}

} // namespace albumd
