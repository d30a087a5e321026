#include "GRWindowMenus.h"

#include "GRGroceryDatabase.h"
#include "GRGroupsController.h"
#include "GRItemCommands.h"
#include "GRItemListView.h"
#include "GRNames.h"
#include "GRWindowController.h"
#include "MGUndoManager.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>

namespace {

const QStringList AppCommands = {
    QStringLiteral("saveDocument"),      QStringLiteral("doPageLayout"), QStringLiteral("exportList"),
    QStringLiteral("emailList"),         QStringLiteral("terminate"),    QStringLiteral("showPreferences"),
    QStringLiteral("showGroceriesHelp"),
};

// Keys that differ between desktops come from the platform's own list.
const std::pair<const char *, QKeySequence::StandardKey> StandardShortcuts[] = {
    {"saveDocument", QKeySequence::Save},   {"printGroceries", QKeySequence::Print},
    {"terminate", QKeySequence::Quit},      {"undoEdit", QKeySequence::Undo},
    {"redoEdit", QKeySequence::Redo},       {"cut", QKeySequence::Cut},
    {"copy", QKeySequence::Copy},           {"paste", QKeySequence::Paste},
    {"selectAll", QKeySequence::SelectAll}, {"find", QKeySequence::Find},
};

QLineEdit *focusedLineEdit()
{
    return qobject_cast<QLineEdit *>(QApplication::focusWidget());
}

bool clipboardHas(const QString &format)
{
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    return mime && (format.isEmpty() ? mime->hasText() : mime->hasFormat(format));
}

} // namespace

GRWindowMenus::GRWindowMenus(GRWindowController &window, const GRGroceryDatabase &database)
    : QObject(&window), m_window(window), m_database(database)
{
    for (QAction *menuAction : window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!menuAction->objectName().isEmpty())
            m_actions.insert(menuAction->objectName(), menuAction);
    }
    for (const auto &[name, key] : StandardShortcuts)
        action(QLatin1String(name))->setShortcut(key);

    connect(action(QStringLiteral("cut")), &QAction::triggered, this, [this] { forwardToFocus("cut"); });
    connect(action(QStringLiteral("copy")), &QAction::triggered, this, [this] { forwardToFocus("copy"); });
    connect(action(QStringLiteral("selectAll")), &QAction::triggered, this,
            [this] { forwardToFocus("selectAll"); });
    connect(action(QStringLiteral("paste")), &QAction::triggered, this, &GRWindowMenus::paste);
    connect(action(QStringLiteral("deleteSelection")), &QAction::triggered, this,
            &GRWindowMenus::deleteSelection);
}

bool GRWindowMenus::isAppCommand(const QString &name)
{
    return AppCommands.contains(name);
}

void GRWindowMenus::forwardToFocus(const char *method)
{
    QWidget *focus = QApplication::focusWidget();
    if (qobject_cast<QLineEdit *>(focus)) {
        QMetaObject::invokeMethod(focus, method);
        return;
    }
    if (focus != m_window.itemList())
        return;
    const QByteArray command(method);
    if (command == "copy")
        m_window.itemCommands()->copy();
    else if (command == "cut")
        m_window.itemCommands()->cut();
}

void GRWindowMenus::deleteSelection()
{
    QWidget *focus = QApplication::focusWidget();
    if (QLineEdit *line = qobject_cast<QLineEdit *>(focus))
        line->del();
    else if (focus == m_window.itemList())
        m_window.itemCommands()->deleteItem(GRItemCommands::DeleteSender::Menu);
    else
        m_window.groups()->deleteGroup();
}

void GRWindowMenus::paste()
{
    if (QLineEdit *line = focusedLineEdit())
        line->paste();
    else
        m_window.paste();
}

bool GRWindowMenus::validateMenuItem(QAction *menuAction) const
{
    if (!menuAction)
        return false;
    const QString name = menuAction->objectName();
    const qint64 row = m_window.groups()->selectedRow();
    QWidget *focus = QApplication::focusWidget();
    QLineEdit *line = qobject_cast<QLineEdit *>(focus);
    const bool itemListFocused = focus && focus == m_window.itemList();
    if (name == QLatin1String("renameCategory"))
        return row >= 0;
    if (name == QLatin1String("changeItem"))
        return m_window.itemCommands()->validateMenuItem(name);
    if (name == QLatin1String("duplicateItem"))
        return m_window.itemCommands()->validateMenuItem(QStringLiteral("duplicate"));
    if (name == QLatin1String("addItem"))
        return !m_database.categories().isEmpty();
    if (name == QLatin1String("deleteSelection")) {
        if (line)
            return line->hasSelectedText() && !line->isReadOnly();
        if (itemListFocused)
            return m_window.itemCommands()->validateMenuItem(QStringLiteral("delete"));
        return m_window.groups()->canDeleteSelection();
    }
    if (name == QLatin1String("paste")) {
        if (line)
            return !line->isReadOnly() && clipboardHas(QString());
        return clipboardHas(GRItemPasteboardType) && !m_database.categories().isEmpty();
    }
    if (name == QLatin1String("undoEdit") || name == QLatin1String("redoEdit")) {
        QString title;
        const bool enabled =
            MGUndoManager::sharedInstance().validateState(name == QLatin1String("undoEdit"), &title);
        menuAction->setText(title);
        return enabled;
    }
    if (name == QLatin1String("cut") || name == QLatin1String("copy")) {
        if (line)
            return line->hasSelectedText() && (name == QLatin1String("copy") || !line->isReadOnly());
        return itemListFocused && m_window.itemCommands()->validateMenuItem(name);
    }
    if (name == QLatin1String("selectAll"))
        return line != nullptr;
    return true;
}
