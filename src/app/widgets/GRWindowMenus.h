#pragma once

#include "GRTypes.h"

#include <QHash>
#include <QObject>

class GRGroceryDatabase;
class GRWindowController;
class QAction;

// The main window's actions as its form made them: the platform's standard keys, the Edit
// commands that act on whichever view has the keyboard focus, and whether each window command can
// run now. The application controller answers for its own commands.
class GRWindowMenus : public QObject
{
    Q_OBJECT

public:
    GRWindowMenus(GRWindowController &window, const GRGroceryDatabase &database);

    QAction *action(const QString &name) const { return m_actions.value(name); }
    const QHash<QString, QAction *> &actions() const { return m_actions; }
    static bool isAppCommand(const QString &name);

    // Whether the command can run now; the undo and redo actions also get their titles.
    bool validateMenuItem(QAction *action) const;

    // Cut, copy and select all go to a focused text field; cut and copy also to the item list.
    void forwardToFocus(const char *method);
    // Edit > Delete: the selected text of a focused field, the selected item (without asking)
    // when the item list has the focus, or else the selected group.
    void deleteSelection();
    void paste();

private:
    GRWindowController &m_window;
    const GRGroceryDatabase &m_database;
    QHash<QString, QAction *> m_actions;
};
