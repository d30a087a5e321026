#pragma once

#include "GRTypes.h"

#include <QString>

// One row of the manual category order: the category and the GUID it was matched by.
struct GRCategoryOrderEntry
{
    GRCategoryPtr cat;
    QString guid;
};
