#pragma once

#include <QString>

// A fresh upper-case GUID, 36 characters.
QString GRNewGuid();
