#pragma once

#include <QLatin1String>

// Notifications posted through MGNotificationCenter, all with no object.
// "selection": the row of the groups table to select.
inline constexpr QLatin1String GRReloadCatsNotification("mwgroceries.reloadCats");
inline constexpr QLatin1String GRUpdateStoresNotification("mwgroceries.updateStores");
// The category list changed; the category order follows.
inline constexpr QLatin1String GRUpdateCatsNotification("mwgroceries.updateCats");
// The list on show changed; optional "item": the item to select.
inline constexpr QLatin1String GRRedoItemsNotification("mwgroceries.redoItems");
// "item": select the group of this item.
inline constexpr QLatin1String GRGroupNotification("mwgroceries.group");
inline constexpr QLatin1String GRFontNotification("mwgroceries.font");

inline constexpr QLatin1String GRSelectionKey("selection");
inline constexpr QLatin1String GRItemKey("item");

// Pasteboard types: one item as XML text, and a drag's index into the list on show.
inline constexpr QLatin1String GRItemPasteboardType("mwgroceries.item");
inline constexpr QLatin1String GRDragPasteboardType("mwgroceries.drag");
