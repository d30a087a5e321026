#include "GRTagKeys.h"

std::shared_ptr<MGXmlDecoder::KeyTable> GroceryKeyTable()
{
    static const std::shared_ptr<MGXmlDecoder::KeyTable> table = [] {
        auto keys = std::make_shared<MGXmlDecoder::KeyTable>();
        const std::pair<GRTagKey, const char *> tags[] = {
            {GRTagAisle, "aisle"},
            {GRTagAisleOrder, "aisleOrder"},
            {GRTagCategories, "categories"},
            {GRTagCategory, "category"},
            {GRTagCategoryOrder, "categoryOrder"},
            {GRTagColor, "color"},
            {GRTagColumns, "columns"},
            {GRTagI, "i"},
            {GRTagVersion, "version"},
            {GRTagItem, "item"},
            {GRTagItems, "items"},
            {GRTagName, "name"},
            {GRTagCount, "count"},
            {GRTagNeed, "need"},
            {GRTagPrint, "print"},
            {GRTagGroceries, "groceries"},
            {GRTagStore, "store"},
            {GRTagStores, "stores"},
            {GRTagTop, "top"},
        };
        for (const auto &[key, name] : tags)
            keys->insert(QString::fromLatin1(name), key);
        return keys;
    }();
    return table;
}

void RegisterGroceryTags()
{
    MGXmlDecoder::setKeyDecoder(GroceryKeyTable());
}
