#include "GRItemDialog.h"

#include "GRAisles.h"
#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRKeyNames.h"
#include "GRNames.h"
#include "GRRedoItems.h"
#include "GRStore.h"
#include "MGNotificationCenter.h"
#include "ui_EditItem.h"

#include <QMenu>
#include <QPushButton>

GRItemDialog *GRItemDialog::editItem(const GRItemPtr &item, GRGroceryDatabase &database,
                                     QList<GRItemPtr> &displayItems, QWidget *window, qint64 currentCategory,
                                     qint64 currentStore)
{
    const GRItemFields fields = item ? GRItemFields::fromItem(database, item)
                                     : GRItemFields::forNewItem(currentCategory, currentStore);
    auto *dialog = new GRItemDialog(item, fields, database, displayItems, window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->open();
    return dialog;
}

GRItemDialog::GRItemDialog(const GRItemPtr &item, const GRItemFields &fields, GRGroceryDatabase &database,
                           QList<GRItemPtr> &displayItems, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::EditItem>()), m_item(item), m_fields(fields),
      m_database(database), m_displayItems(displayItems)
{
    m_ui->setupUi(this);
    setWindowTitle(item ? tr("Edit Item") : tr("Add Item"));
    fillControls();

    connect(m_ui->nameField, &QLineEdit::textEdited, this, [this](const QString &text) {
        m_fields.name = text;
        updateOK();
    });
    connect(m_ui->aisleField, &QLineEdit::textEdited, this, [this](const QString &text) {
        m_fields.aisle = text;
        // A number typed returns the special aisle to "<Numbered aisles>".
        m_fields.specialAisle = 0;
        m_ui->specialAisleButton->setCurrentIndex(0);
    });
    connect(m_ui->specialAisleButton, &QComboBox::activated, this, &GRItemDialog::changeSpecialAisle);
    connect(m_ui->neededBox, &QCheckBox::toggled, this, [this](bool on) { m_fields.needed = on; });
    connect(m_ui->countField, &QSpinBox::valueChanged, this,
            [this](int count) { m_fields.count = quint64(count); });
    connect(m_ui->categoryButton, &QComboBox::currentIndexChanged, this,
            [this](int index) { m_fields.categoryIndex = index; });
    connect(m_ui->storeButton, &QComboBox::currentIndexChanged, this,
            [this](int index) { m_fields.storeIndex = index; });
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &GRItemDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &GRItemDialog::reject);

    m_ui->nameField->setFocus();
    m_ui->nameField->selectAll();
    updateOK();
}

GRItemDialog::~GRItemDialog() = default;

void GRItemDialog::fillControls()
{
    m_ui->nameField->setText(m_fields.name);
    m_ui->neededBox->setChecked(m_fields.needed);
    m_ui->countField->setValue(int(std::min<quint64>(m_fields.count, quint64(m_ui->countField->maximum()))));
    m_ui->aisleField->setText(m_fields.aisle);

    auto *keys = new QMenu(m_ui->keysButton);
    for (qsizetype i = 0; i < g_keyStrings.size(); ++i) {
        // A key string is "<mark>\t<name>"; a tab in a menu title would push the name to the far side.
        QString title = g_keyStrings.at(i);
        title.replace(QLatin1Char('\t'), QStringLiteral("  "));
        connect(keys->addAction(title), &QAction::triggered, this, [this, i] { insertKey(i); });
    }
    m_ui->keysButton->setMenu(keys);

    m_ui->specialAisleButton->addItems(GRAisles::groupNames());
    m_ui->specialAisleButton->setCurrentIndex(int(m_fields.specialAisle));
    for (const GRCategoryPtr &category : m_database.categories())
        m_ui->categoryButton->addItem(category->name());
    m_ui->categoryButton->setCurrentIndex(int(m_fields.categoryIndex));
    for (const GRStorePtr &store : m_database.stores())
        m_ui->storeButton->addItem(store->name());
    m_ui->storeButton->setCurrentIndex(int(m_fields.storeIndex));
}

void GRItemDialog::updateOK()
{
    okButton()->setEnabled(m_fields.isComplete());
}

void GRItemDialog::insertKey(qsizetype index)
{
    const QString key = g_keyStrings.value(index);
    if (key.isEmpty())
        return;
    QLineEdit *field = m_ui->nameField;
    if (focusWidget() != field) {
        field->setFocus(Qt::OtherFocusReason);
        field->deselect();
        field->setCursorPosition(int(field->text().size()));
    }
    field->insert(key.left(1));
    m_fields.name = field->text();
    updateOK();
}

void GRItemDialog::changeSpecialAisle(int index)
{
    m_fields.specialAisle = index;
    if (index != 0) {
        m_fields.aisle.clear();
        m_ui->aisleField->clear();
    }
}

bool GRItemDialog::handleOK()
{
    if (!m_fields.isComplete() || !m_fields.category(m_database))
        return false;
    if (!RecordUndo(m_fields.undoAction(m_database, m_item), GRItemFields::undoDescriptor(m_item),
                    m_fields.category(m_database)))
        return false;
    m_item = m_fields.apply(m_database, m_displayItems, m_item);
    MGNotificationCenter::defaultCenter().post(GRGroupNotification,
                                               {{GRItemKey, QVariant::fromValue(m_item)}});
    PostRedoItems(m_item);
    done(QDialog::Accepted);
    return true;
}

void GRItemDialog::handleCancel()
{
    done(QDialog::Rejected);
}

void GRItemDialog::accept()
{
    handleOK();
}

void GRItemDialog::reject()
{
    handleCancel();
}

QLineEdit *GRItemDialog::nameField() const
{
    return m_ui->nameField;
}

QLineEdit *GRItemDialog::aisleField() const
{
    return m_ui->aisleField;
}

QToolButton *GRItemDialog::keysButton() const
{
    return m_ui->keysButton;
}

QComboBox *GRItemDialog::specialAisleButton() const
{
    return m_ui->specialAisleButton;
}

QComboBox *GRItemDialog::categoryButton() const
{
    return m_ui->categoryButton;
}

QComboBox *GRItemDialog::storeButton() const
{
    return m_ui->storeButton;
}

QCheckBox *GRItemDialog::neededBox() const
{
    return m_ui->neededBox;
}

QSpinBox *GRItemDialog::countField() const
{
    return m_ui->countField;
}

QPushButton *GRItemDialog::okButton() const
{
    return m_ui->buttonBox->button(QDialogButtonBox::Ok);
}
