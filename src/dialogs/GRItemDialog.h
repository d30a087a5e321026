#pragma once

#include "GRItemFields.h"
#include "GRTypes.h"

#include <QDialog>

#include <memory>

class GRGroceryDatabase;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QToolButton;
namespace Ui {
class EditItem;
}

// The sheet that adds an item or changes one: name (with the key marks at hand), needed and how
// many, a numbered or a special aisle, category and store. The controls edit a set of fields;
// only OK touches the list, recording "Add Item" or "Change Item" first.
class GRItemDialog : public QDialog
{
    Q_OBJECT

public:
    // Opens the sheet window-modal on window for item, or for a new item when null; a new item
    // starts in the selected category and store (negative: none). The sheet deletes itself when
    // it closes.
    static GRItemDialog *editItem(const GRItemPtr &item, GRGroceryDatabase &database,
                                  QList<GRItemPtr> &displayItems, QWidget *window, qint64 currentCategory,
                                  qint64 currentStore);

    GRItemDialog(const GRItemPtr &item, const GRItemFields &fields, GRGroceryDatabase &database,
                 QList<GRItemPtr> &displayItems, QWidget *parent = nullptr);
    ~GRItemDialog() override;

    GRItemPtr item() const { return m_item; }
    const GRItemFields &fields() const { return m_fields; }

    // Puts the first character of key string index at the caret of the name being edited, or at
    // the end of the name.
    void insertKey(qsizetype index);
    void changeSpecialAisle(int index);
    // Applies the fields; false, with the sheet still open, when the undo step was refused.
    bool handleOK();
    void handleCancel();

    QLineEdit *nameField() const;
    QLineEdit *aisleField() const;
    QToolButton *keysButton() const;
    QComboBox *specialAisleButton() const;
    QComboBox *categoryButton() const;
    QComboBox *storeButton() const;
    QCheckBox *neededBox() const;
    QSpinBox *countField() const;
    QPushButton *okButton() const;

    void accept() override;
    void reject() override;

private:
    void fillControls();
    void updateOK();

    std::unique_ptr<Ui::EditItem> m_ui;
    GRItemPtr m_item;
    GRItemFields m_fields;
    GRGroceryDatabase &m_database;
    QList<GRItemPtr> &m_displayItems;
};
