#include "GRItemCommands.h"

#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRItem.h"
#include "GRItemListView.h"
#include "GRNames.h"
#include "GRPrefController.h"
#include "GRRedoItems.h"
#include "GRStore.h"
#include "GRUndoKinds.h"
#include "MGAlert.h"
#include "MGLog.h"
#include "MGNotificationCenter.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMimeData>

namespace {

const char *const StoreEntryProperty = "grStoreEntry";

bool isStoreEntry(const QAction *action)
{
    return action->property(StoreEntryProperty).isValid();
}

QString keyText(const QKeySequence &keys)
{
    return keys.toString(QKeySequence::NativeText);
}

} // namespace

GRItemCommands::GRItemCommands(GRItemListView *view, GRGroceryDatabase &database,
                               QList<GRItemPtr> &displayItems, QObject *parent)
    : QObject(parent), m_view(view), m_database(database), m_displayItems(displayItems),
      m_contextMenu(new QMenu(view))
{
    m_contextMenu->setObjectName(QStringLiteral("itemContextMenu"));
    // The keys are the list's own, shown as hints: as shortcuts they would clash with the menus'.
    QAction *toggle = addEntry(QStringLiteral("toggleItem"), tr("Needed"), tr("Space"));
    toggle->setCheckable(true);
    connect(toggle, &QAction::triggered, this, [this] {
        if (m_view)
            m_view->toggleItem();
    });
    connect(addEntry(QStringLiteral("changeItem"), tr("Edit Item…"), tr("Return")), &QAction::triggered, this,
            &GRItemCommands::changeItem);
    connect(addEntry(QStringLiteral("copy"), tr("Copy"), keyText(QKeySequence::Copy)), &QAction::triggered,
            this, &GRItemCommands::copy);
    connect(addEntry(QStringLiteral("cut"), tr("Cut"), keyText(QKeySequence::Cut)), &QAction::triggered, this,
            &GRItemCommands::cut);
    connect(addEntry(QStringLiteral("delete"), tr("Delete"), QString()), &QAction::triggered, this,
            [this] { deleteItem(DeleteSender::Menu); });
    connect(addEntry(QStringLiteral("duplicate"), tr("Duplicate"), keyText(QKeySequence(tr("Ctrl+D")))),
            &QAction::triggered, this, &GRItemCommands::duplicate);
    m_contextMenu->addSeparator();
    connect(m_contextMenu, &QMenu::aboutToShow, this, &GRItemCommands::prepareContextMenu);
    updateContextMenu();

    view->setContextMenu(m_contextMenu);
    connect(view, &GRItemListView::changeItemRequested, this, &GRItemCommands::changeItem);
    connect(view, &GRItemListView::deleteRequested, this, [this] { deleteItem(DeleteSender::DeleteKey); });
    connect(view, &GRItemListView::storeKeyPressed, this, &GRItemCommands::setStoreCore);
    MGNotificationCenter::defaultCenter().addObserver(GRUpdateStoresNotification, this,
                                                      [this](const QVariantMap &) { updateContextMenu(); });
}

GRItemCommands::~GRItemCommands()
{
    MGNotificationCenter::defaultCenter().removeObserver(this);
}

QAction *GRItemCommands::addEntry(const QString &name, const QString &title, const QString &keyHint)
{
    QAction *action =
        m_contextMenu->addAction(keyHint.isEmpty() ? title : title + QLatin1Char('\t') + keyHint);
    action->setObjectName(name);
    return action;
}

QAction *GRItemCommands::contextAction(const QString &name) const
{
    if (!m_contextMenu)
        return nullptr;
    for (QAction *action : m_contextMenu->actions()) {
        if (action->objectName() == name)
            return action;
    }
    return nullptr;
}

bool GRItemCommands::validateMenuItem(const QString &name) const
{
    static const QStringList needAnItem = {QStringLiteral("changeItem"), QStringLiteral("copy"),
                                           QStringLiteral("cut"), QStringLiteral("delete"),
                                           QStringLiteral("duplicate")};
    return !needAnItem.contains(name) || !m_displayItems.isEmpty();
}

void GRItemCommands::updateContextMenu()
{
    if (!m_contextMenu)
        return;
    QList<QAction *> actions = m_contextMenu->actions();
    while (!actions.isEmpty() && isStoreEntry(actions.last())) {
        QAction *entry = actions.takeLast();
        m_contextMenu->removeAction(entry);
        delete entry;
    }
    const QList<GRStorePtr> &stores = m_database.stores();
    for (qsizetype i = 0; i < stores.size(); ++i) {
        // The first sixteen stores have a key: F1 to F16.
        const QString title =
            i < 16 ? QStringLiteral("%1\tF%2").arg(stores[i]->name()).arg(i + 1) : stores[i]->name();
        QAction *entry = m_contextMenu->addAction(title);
        entry->setProperty(StoreEntryProperty, qint64(i));
        entry->setCheckable(true);
        connect(entry, &QAction::triggered, this, [this, i] { setStoreCore(i); });
    }
}

void GRItemCommands::prepareContextMenu()
{
    const GRItemPtr item = selectedItem();
    if (!item)
        return;
    if (!m_contextMenu)
        return;
    const qint64 storeIndex = m_database.stores().indexOf(item->store());
    for (QAction *action : m_contextMenu->actions()) {
        if (isStoreEntry(action))
            action->setChecked(action->property(StoreEntryProperty).toLongLong() == storeIndex);
    }
    if (QAction *toggle = contextAction(QStringLiteral("toggleItem")))
        toggle->setChecked(item->isNeeded());
}

GRItemPtr GRItemCommands::selectedItem() const
{
    if (!m_view)
        return nullptr;
    return m_displayItems.value(qsizetype(m_view->selectedItem()));
}

void GRItemCommands::changeItem()
{
    if (const GRItemPtr item = selectedItem())
        emit editItemRequested(item);
}

void GRItemCommands::copy()
{
    const GRItemPtr item = selectedItem();
    if (!item)
        return;
    const QString xml = GRGroceryEdits::itemPasteboardText(m_database, item);
    if (xml.isEmpty()) {
        MGLog(QStringLiteral("Copy failed: the item's category or store is not in the lists"));
        return;
    }
    auto *mime = new QMimeData;
    mime->setData(GRItemPasteboardType, xml.toUtf8());
    mime->setText(item->name());
    QGuiApplication::clipboard()->setMimeData(mime);
}

void GRItemCommands::cut()
{
    copy();
    deleteItem(DeleteSender::Cut);
}

void GRItemCommands::deleteItem(DeleteSender sender)
{
    const GRItemPtr item = selectedItem();
    if (!item)
        return;
    const GRUndoDescriptor descriptor =
        sender == DeleteSender::Cut ? GRUndoDescriptor::CutItem : GRUndoDescriptor::DeleteItem;
    // The live mark flips after the snapshot, so that undo brings the item back as it was even
    // when the user keeps it at the question below.
    if (RecordUndo(GRUndoAction::Category, descriptor, item->category()))
        item->setNeeded(!item->isNeeded());
    if (sender == DeleteSender::DeleteKey && GRPrefController::sharedInstance().confirmDelete() &&
        !OkToProceed(tr("Delete item?"),
                     tr("Are you sure you want to delete the item \"%1\"?").arg(item->name()))) {
        if (m_view)
            m_view->invalidateItem(m_view->selectedItem());
        return;
    }
    PostRedoItems(GRGroceryEdits::removeItem(m_displayItems, item));
}

void GRItemCommands::duplicate()
{
    const GRItemPtr item = selectedItem();
    if (!item || !RecordUndo(GRUndoAction::Category, GRUndoDescriptor::Duplicate, item->category()))
        return;
    PostRedoItems(GRGroceryEdits::duplicateItem(m_displayItems, item));
}

void GRItemCommands::setStoreCore(qint64 index)
{
    const GRItemPtr item = selectedItem();
    const GRStorePtr store = m_database.stores().value(index);
    if (!item || !store ||
        !RecordUndo(GRUndoAction::Category, GRUndoDescriptor::ReassignStore, item->category()))
        return;
    item->setStore(store);
    if (m_view)
        m_view->invalidateItem(m_view->selectedItem());
}

void GRItemCommands::clickListControl(int segment)
{
    if (segment == 0) {
        if (!m_database.categories().isEmpty())
            emit editItemRequested(nullptr);
    } else if (!m_displayItems.isEmpty()) {
        deleteItem(DeleteSender::Menu);
    }
}
