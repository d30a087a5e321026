#include "GRGuid.h"

#include <QUuid>

QString GRNewGuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}
