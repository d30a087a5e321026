#pragma once

#include "GRTypes.h"

#include <QColor>
#include <QDialog>
#include <QList>

#include <memory>

class GRGroceryDatabase;
class GRStoresTableModel;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;
class QToolButton;
namespace Ui {
class EditStores;
}

// The sheet that edits the store list as a whole: add, remove, rename, colour and the print
// settings of each store. It works on copies (same GUIDs) and hands the edited list over only on
// OK, through installStores, so that the receiver can install it as one undoable step.
class GRStoresDialog : public QDialog
{
    Q_OBJECT

public:
    enum Segment
    {
        AddSegment,
        RemoveSegment
    };

    // Opens the sheet window-modal on window (application-modal without one) on copies of the
    // database's stores. The sheet deletes itself when it closes.
    static GRStoresDialog *editStores(const GRGroceryDatabase &database, QWidget *window);
    // The row to select once removedRow is gone and remaining stores are left.
    static int rowAfterRemoval(int removedRow, int remaining);

    explicit GRStoresDialog(const QList<GRStorePtr> &stores, QWidget *parent = nullptr);
    ~GRStoresDialog() override;

    const QList<GRStorePtr> &stores() const;
    GRStorePtr currentStore() const { return m_currentStore; }
    QColor color() const { return m_color; }

    void tableViewSelectionDidChange();
    void clickListControl(int segment);
    void changeColor(const QColor &color);
    void handleOK();
    void handleCancel();

    QTableView *storeList() const;
    QToolButton *addButton() const;
    QToolButton *removeButton() const;
    QLineEdit *nameField() const;
    QToolButton *colorButton() const;
    QComboBox *printOptionButton() const;
    QCheckBox *topOfPageBox() const;
    QPushButton *okButton() const;

    void accept() override;
    void reject() override;

signals:
    void installStores(const QList<GRStorePtr> &stores);

private:
    int selectedRow() const;
    void selectRow(int row);
    void fillStoreControls(int row);
    void updateColorButton();
    void chooseColor();

    std::unique_ptr<Ui::EditStores> m_ui;
    GRStoresTableModel *m_model;
    GRStorePtr m_currentStore;
    QColor m_color;
};
