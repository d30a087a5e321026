#pragma once

#include "MGXmlDecoder.h"

#include <QtGlobal>

#include <memory>

// The keys that the grocery tags read with. "aisle" shares key 0 with every unregistered tag.
enum GRTagKey : quint32
{
    GRTagAisle = 0,
    GRTagAisleOrder = 1,
    GRTagCategories = 2,
    GRTagCategory = 3,
    GRTagCategoryOrder = 4,
    GRTagColor = 5,
    GRTagColumns = 6,
    GRTagI = 7,
    GRTagVersion = 8,
    GRTagItem = 9,
    GRTagItems = 10,
    GRTagName = 11,
    GRTagCount = 12,
    GRTagNeed = 13,
    GRTagPrint = 14,
    GRTagGroceries = 15,
    GRTagStore = 16,
    GRTagStores = 17,
    GRTagTop = 18,
};

// Builds the grocery key table on first use and makes it the decoder's current table.
void RegisterGroceryTags();
// The grocery key table, so that a later reader of grocery text can make it current again.
std::shared_ptr<MGXmlDecoder::KeyTable> GroceryKeyTable();
