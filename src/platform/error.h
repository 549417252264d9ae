#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace quiv {

// A failure with one sentence that a user can act on; never contains credentials.
class Error : public std::exception {
public:
    explicit Error(QString description)
        : m_description(std::move(description)), m_what(m_description.toUtf8()) {}

    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    QString m_description;
    QByteArray m_what;
};

} // namespace quiv
