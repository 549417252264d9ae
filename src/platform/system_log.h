#pragma once

#include <QString>

namespace quiv {

// Failures that reach no view. Any thread; a line never contains credentials.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    virtual void write(const QString& line) = 0;
};

// The system's log daemon, under the program's name. One object a process.
class SyslogSystemLog final : public SystemLog {
public:
    SyslogSystemLog();
    ~SyslogSystemLog() override;
    void write(const QString& line) override;
};

} // namespace quiv
