#include "MGLog.h"

#include <QDebug>

void MGLog(const QString &line)
{
    // A reason quoted from elsewhere may carry line breaks; the log keeps one line per failure.
    QString flat = line;
    flat.replace(QLatin1String("\r\n"), QLatin1String(" "));
    flat.replace(QLatin1Char('\n'), QLatin1Char(' '));
    flat.replace(QLatin1Char('\r'), QLatin1Char(' '));
    qWarning().noquote() << flat;
}
