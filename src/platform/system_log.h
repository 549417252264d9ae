#pragma once

#include <QString>

namespace quiv {

// Failures that reach no view. Any thread; a line never contains credentials.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    // One line, whatever the text holds: as displayText() has it.
    void write(const QString& text);

private:
    virtual void writeLine(const QString& line) = 0;
};

// The system's log daemon, under the program's name. One object a process.
class SyslogSystemLog final : public SystemLog {
public:
    SyslogSystemLog();
    ~SyslogSystemLog() override;

private:
    void writeLine(const QString& line) override;
};

} // namespace quiv
