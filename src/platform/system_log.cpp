#include "platform/system_log.h"

#include "platform/display_text.h"

#include <syslog.h>

namespace quiv {

void SystemLog::write(const QString& text) {
    writeLine(displayText(text));
}

SyslogSystemLog::SyslogSystemLog() {
    ::openlog("quiv-controller", LOG_PID, LOG_USER);
}

SyslogSystemLog::~SyslogSystemLog() {
    ::closelog();
}

void SyslogSystemLog::writeLine(const QString& line) {
    ::syslog(LOG_WARNING, "%s", line.toUtf8().constData());
}

} // namespace quiv
