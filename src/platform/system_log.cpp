#include "platform/system_log.h"

#include <syslog.h>

namespace quiv {

SyslogSystemLog::SyslogSystemLog() {
    ::openlog("quiv-controller", LOG_PID, LOG_USER);
}

SyslogSystemLog::~SyslogSystemLog() {
    ::closelog();
}

void SyslogSystemLog::write(const QString& line) {
    ::syslog(LOG_WARNING, "%s", line.toUtf8().constData());
}

} // namespace quiv
