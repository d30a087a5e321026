#pragma once

#include <QString>

class GRGroceryDatabase;

// The grocery list as plain text: per category in list order its name, then one line per item in
// the category's order: "  [x] " or "  [ ] ", the display name, a tab, the store's name, a tab and
// the aisle. With neededOnly, only needed items, and only the categories that have any.
QString GroceryListText(const GRGroceryDatabase &database, bool neededOnly);
