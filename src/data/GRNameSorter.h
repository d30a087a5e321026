#pragma once

#include "GRTypes.h"

#include <QList>

// The name sorter: by name, ascending, case-insensitive; stable, so equal names keep their order.
void SortByName(QList<GRItemPtr> &items);
void SortByName(QList<GRCategoryPtr> &categories);
