#pragma once

#include "GRTypes.h"

// Tells the views that the list on show changed: the item list re-sorts, lays out and selects
// item when given.
void PostRedoItems(const GRItemPtr &item = nullptr);
