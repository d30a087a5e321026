#pragma once

#include <QString>

// Shared test set-up: isolated user folders and small fixtures.
namespace GRTest {
// Turns on QStandardPaths test mode; call before the first QSettings is made.
void initEnvironment();
// A path under the source tree's tests/ folder.
QString dataPath(const QString &relative);
} // namespace GRTest
