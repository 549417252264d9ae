#include "simulator/tv/pairing.h"

#include <QRandomGenerator>
#include <QUuid>

#include <algorithm>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr int AllowedWrongAttempts = 5;
constexpr Pairing::Seconds WantedFor{6}; // an application in front of a person asks every two or so

QString randomCode() {
    const int number = static_cast<int>(QRandomGenerator::system()->bounded(1000));
    return u"%1"_s.arg(number, 3, 10, QLatin1Char('0'));
}

} // namespace

Pairing::Pairing(Settings settings, std::function<void(QString)> codeShown,
                 std::function<Instant()> now)
    : m_settings(std::move(settings)), m_codeShown(std::move(codeShown)), m_now(std::move(now)) {
    showNewCode();
}

// Called with the lock held, except by the constructor.
void Pairing::showNewCode() {
    const QString previous = m_code;
    do {
        m_code = m_settings.code.isEmpty() ? randomCode() : m_settings.code;
    } while (m_settings.code.isEmpty() && m_code == previous);
    m_codeExpires = m_now() + m_settings.codeLifetime;
}

bool Pairing::isCode(const QString& text) {
    return text.size() == 3 && std::ranges::all_of(text, [](QChar character) {
               return character >= u'0' && character <= u'9';
           });
}

// Rounded up, so that what is still valid never reads 0.
qint64 Pairing::secondsUntil(Instant instant) const {
    return std::max<qint64>(0, std::chrono::ceil<Seconds>(instant - m_now()).count());
}

Pairing::Verdict Pairing::verify(const QString& clientId, const QString& code) {
    renewExpiredCode();
    const std::scoped_lock lock(m_mutex);
    if (m_now() < m_lockedUntil)
        return {.kind = Verdict::Kind::LockedOut, .lockedForSec = secondsUntil(m_lockedUntil)};
    if (code != m_code) {
        m_unpairedAskedAt[clientId] = m_now();
        return refuse();
    }
    m_unpairedAskedAt.remove(clientId);
    m_wrongAttempts = 0;
    return {.kind = Verdict::Kind::Paired, .grant = issue(clientId)};
}

Pairing::Verdict Pairing::refuse() {
    ++m_wrongAttempts;
    if (m_wrongAttempts < AllowedWrongAttempts)
        return {.kind = Verdict::Kind::WrongCode,
                .attemptsLeft = AllowedWrongAttempts - m_wrongAttempts};
    m_wrongAttempts = 0;
    m_lockedUntil = m_now() + m_settings.lockout;
    return {.kind = Verdict::Kind::WrongCode, .attemptsLeft = 0};
}

Pairing::Grant Pairing::issue(const QString& clientId) {
    const QString text = QUuid::createUuid().toString(QUuid::Id128);
    m_tokens[clientId].push_back({text, m_now() + m_settings.tokenLifetime});
    return {text, m_settings.tokenLifetime.count()};
}

const Pairing::Token* Pairing::validToken(const Credentials& sender) {
    const auto client = m_tokens.find(sender.clientId);
    if (client == m_tokens.end())
        return nullptr;
    std::erase_if(*client, [now = m_now()](const Token& token) { return token.expires <= now; });
    const auto token = std::ranges::find(*client, sender.token, &Token::text);
    return token == client->end() ? nullptr : &*token;
}

Pairing::Status Pairing::status(const Credentials& sender) {
    renewExpiredCode();
    const std::scoped_lock lock(m_mutex);
    if (const Token* token = validToken(sender))
        return {true, secondsUntil(token->expires)};
    m_unpairedAskedAt[sender.clientId] = m_now();
    return {false, secondsUntil(m_codeExpires)};
}

bool Pairing::isPaired(const Credentials& sender) {
    const std::scoped_lock lock(m_mutex);
    return validToken(sender) != nullptr;
}

std::optional<Pairing::Grant> Pairing::renewal(const Credentials& sender) {
    const std::scoped_lock lock(m_mutex);
    const Token* token = validToken(sender);
    if (!token)
        return std::nullopt;
    const Token& newest = m_tokens[sender.clientId].back();
    if ((newest.expires - m_now()) * 2 < m_settings.tokenLifetime)
        return issue(sender.clientId);
    if (newest.text != token->text)
        return Grant{newest.text, secondsUntil(newest.expires)};
    return std::nullopt;
}

void Pairing::cancel(const Credentials& sender) {
    const std::scoped_lock lock(m_mutex);
    if (validToken(sender))
        m_tokens.remove(sender.clientId);
    m_unpairedAskedAt.remove(sender.clientId);
}

QString Pairing::code() const {
    const std::scoped_lock lock(m_mutex);
    return m_code;
}

Pairing::Shown Pairing::shown() {
    renewExpiredCode();
    const std::scoped_lock lock(m_mutex);
    const Instant now = m_now();
    m_unpairedAskedAt.removeIf([now](const auto& each) { return each.value() + WantedFor < now; });
    return {m_code, secondsUntil(m_codeExpires), !m_unpairedAskedAt.isEmpty()};
}

void Pairing::renewExpiredCode() {
    QString shown;
    {
        const std::scoped_lock lock(m_mutex);
        if (m_now() < m_codeExpires)
            return;
        showNewCode();
        shown = m_code;
    }
    m_codeShown(shown);
}

void Pairing::setCode(const QString& code) {
    {
        const std::scoped_lock lock(m_mutex);
        m_settings.code = code;
    }
    expireCode();
}

void Pairing::expireCode() {
    {
        const std::scoped_lock lock(m_mutex);
        m_codeExpires = m_now();
    }
    renewExpiredCode();
}

void Pairing::expireTokens() {
    const std::scoped_lock lock(m_mutex);
    m_tokens.clear();
}

void Pairing::setTokenLifetime(Seconds lifetime) {
    const std::scoped_lock lock(m_mutex);
    m_settings.tokenLifetime = lifetime;
}

} // namespace quiv::simulator
