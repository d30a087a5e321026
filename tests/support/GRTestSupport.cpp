#include "GRTestSupport.h"

#include <QStandardPaths>

namespace GRTest {

void initEnvironment()
{
    QStandardPaths::setTestModeEnabled(true);
}

QString dataPath(const QString &relative)
{
    return QStringLiteral(GR_TEST_DATA_DIR "/") + relative;
}

} // namespace GRTest
