#include "GRUndoKinds.h"

#include "MGUndoManager.h"

#include <array>

QString UndoDescriptorName(quint32 descriptor)
{
    static constexpr std::array<const char *, 17> names = {
        "Add Item",        "Change Item",    "Cut Item",     "Paste Item",
        "Delete Item",     "Duplicate",      "Move Item",    "Clear All Checkmarks",
        "Check Item",      "Reassign Store", "Add Category", "Rename Category",
        "Delete Category", "Stores",         "Add Store",    "Rename Store",
        "Delete Store",
    };
    return descriptor < names.size() ? QString::fromLatin1(names[descriptor]) : QString();
}

bool RecordUndo(GRUndoAction action, GRUndoDescriptor descriptor, const GRCategoryPtr &context)
{
    std::any any;
    if (context)
        any = context;
    return MGUndoManager::sharedInstance().setUndoAction(quint32(action), quint32(descriptor), any);
}
