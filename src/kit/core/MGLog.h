#pragma once

#include <QString>

// One line per failure in the system log (qWarning), naming the path and the reason.
void MGLog(const QString &line);
