#pragma once

#include <QString>

// A record name as it is kept: control characters (tab and line breaks included) become spaces,
// a lone surrogate becomes U+FFFD, and surrounding white space goes. The file's text is exactly
// this, so what the list sorts by is what a save writes and a reload reads.
QString GRCleanName(const QString &name);
