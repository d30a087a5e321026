#include "GRStoresDialog.h"

#include "GRGroceryDatabase.h"
#include "GRStore.h"
#include "GRStoresTableModel.h"
#include "MGColorSwatchDelegate.h"
#include "ui_EditStores.h"

#include <QColorDialog>
#include <QHeaderView>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

GRStoresDialog *GRStoresDialog::editStores(const GRGroceryDatabase &database, QWidget *window)
{
    QList<GRStorePtr> copies;
    for (const GRStorePtr &store : database.stores())
        copies.append(store->copy());
    auto *dialog = new GRStoresDialog(copies, window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->open();
    return dialog;
}

int GRStoresDialog::rowAfterRemoval(int removedRow, int remaining)
{
    if (remaining <= 1)
        return 0;
    // The last row went: its predecessor is the new last row. Otherwise the next store moved up.
    return removedRow >= remaining ? remaining - 1 : removedRow;
}

GRStoresDialog::GRStoresDialog(const QList<GRStorePtr> &stores, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::EditStores>()), m_model(new GRStoresTableModel(stores, this))
{
    m_ui->setupUi(this);
    QTableView *list = m_ui->storeList;
    list->setModel(m_model);
    list->setItemDelegateForColumn(GRStoresTableModel::ColorColumn, new MGColorSwatchDelegate(list));
    QHeaderView *header = list->horizontalHeader();
    header->setSectionResizeMode(GRStoresTableModel::StoreColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(GRStoresTableModel::KeyColumn, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(GRStoresTableModel::ColorColumn, QHeaderView::Fixed);
    header->resizeSection(GRStoresTableModel::ColorColumn, 56);

    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &GRStoresDialog::tableViewSelectionDidChange);
    // An edit in the list's name cell shows in the name field as well.
    connect(m_model, &QAbstractItemModel::dataChanged, this, [this] {
        if (m_currentStore && m_ui->nameField->text() != m_currentStore->name())
            m_ui->nameField->setText(m_currentStore->name());
    });
    connect(m_ui->addButton, &QToolButton::clicked, this, [this] { clickListControl(AddSegment); });
    connect(m_ui->removeButton, &QToolButton::clicked, this, [this] { clickListControl(RemoveSegment); });
    connect(m_ui->nameField, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (!m_currentStore)
            return;
        m_currentStore->setName(text);
        m_model->reloadRow(selectedRow());
    });
    connect(m_ui->colorButton, &QToolButton::clicked, this, &GRStoresDialog::chooseColor);
    connect(m_ui->printOptionButton, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (m_currentStore && index >= 0)
            m_currentStore->setPrintOption(index);
    });
    connect(m_ui->topOfPageBox, &QCheckBox::toggled, this, [this](bool on) {
        if (m_currentStore)
            m_currentStore->setTopOfPage(on);
    });
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &GRStoresDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &GRStoresDialog::reject);

    selectRow(0);
    tableViewSelectionDidChange();
}

GRStoresDialog::~GRStoresDialog() = default;

const QList<GRStorePtr> &GRStoresDialog::stores() const
{
    return m_model->stores();
}

int GRStoresDialog::selectedRow() const
{
    const QModelIndexList rows = m_ui->storeList->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void GRStoresDialog::selectRow(int row)
{
    const QModelIndex index = m_model->index(row, GRStoresTableModel::StoreColumn);
    if (!index.isValid())
        return;
    m_ui->storeList->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                  QItemSelectionModel::Rows);
    m_ui->storeList->scrollTo(index);
}

void GRStoresDialog::tableViewSelectionDidChange()
{
    const int row = selectedRow();
    m_currentStore = m_model->store(row);
    m_color = m_currentStore ? ColorFromKolor(m_currentStore->kolor()) : QColor();
    fillStoreControls(row);
}

void GRStoresDialog::fillStoreControls(int row)
{
    const GRStore *store = m_currentStore.get();
    // Row 0 is the fallback store that deleted stores hand their items to: it keeps its name.
    m_ui->nameField->setEnabled(row > 0);
    m_ui->removeButton->setEnabled(row > 0);
    m_ui->nameField->setText(store ? store->name() : QString());
    m_ui->colorButton->setEnabled(store);
    updateColorButton();

    const QSignalBlocker printBlocker(m_ui->printOptionButton);
    const QSignalBlocker topBlocker(m_ui->topOfPageBox);
    m_ui->printOptionButton->setEnabled(store);
    m_ui->printOptionButton->setCurrentIndex(store ? int(store->printOption()) : -1);
    m_ui->topOfPageBox->setEnabled(store);
    m_ui->topOfPageBox->setChecked(store && store->topOfPage());
}

void GRStoresDialog::updateColorButton()
{
    QPixmap swatch(m_ui->colorButton->iconSize());
    swatch.fill(Qt::transparent);
    if (m_currentStore) {
        QPainter painter(&swatch);
        MGColorSwatchDelegate::drawSwatch(&painter, QRectF(swatch.rect()), m_currentStore->kolor(),
                                          palette());
    }
    m_ui->colorButton->setIcon(QIcon(swatch));
}

void GRStoresDialog::clickListControl(int segment)
{
    if (segment == AddSegment) {
        const GRStorePtr store = GRStore::create();
        store->setName(tr("New store"));
        m_model->appendStore(store);
        selectRow(m_model->rowCount() - 1);
        tableViewSelectionDidChange();
        m_ui->nameField->setFocus(Qt::OtherFocusReason);
        m_ui->nameField->selectAll();
        return;
    }
    const GRStorePtr removed = m_currentStore;
    const int row = selectedRow();
    if (!removed || row <= 0)
        return;
    m_currentStore.reset();
    m_model->removeStore(removed);
    m_ui->storeList->clearSelection();
    selectRow(rowAfterRemoval(row, m_model->rowCount()));
    tableViewSelectionDidChange();
}

void GRStoresDialog::chooseColor()
{
    if (!m_currentStore)
        return;
    auto *panel = new QColorDialog(this);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setOption(QColorDialog::ShowAlphaChannel);
    panel->setCurrentColor(m_color);
    connect(panel, &QColorDialog::colorSelected, this, &GRStoresDialog::changeColor);
    panel->open();
}

void GRStoresDialog::changeColor(const QColor &color)
{
    if (!m_currentStore)
        return;
    m_currentStore->setKolor(KolorFromColor(color));
    m_color = ColorFromKolor(m_currentStore->kolor());
    updateColorButton();
    m_model->reloadRow(selectedRow());
}

void GRStoresDialog::handleOK()
{
    emit installStores(m_model->stores());
    done(QDialog::Accepted);
}

void GRStoresDialog::handleCancel()
{
    done(QDialog::Rejected);
}

void GRStoresDialog::accept()
{
    handleOK();
}

void GRStoresDialog::reject()
{
    handleCancel();
}

QTableView *GRStoresDialog::storeList() const
{
    return m_ui->storeList;
}

QToolButton *GRStoresDialog::addButton() const
{
    return m_ui->addButton;
}

QToolButton *GRStoresDialog::removeButton() const
{
    return m_ui->removeButton;
}

QLineEdit *GRStoresDialog::nameField() const
{
    return m_ui->nameField;
}

QToolButton *GRStoresDialog::colorButton() const
{
    return m_ui->colorButton;
}

QComboBox *GRStoresDialog::printOptionButton() const
{
    return m_ui->printOptionButton;
}

QCheckBox *GRStoresDialog::topOfPageBox() const
{
    return m_ui->topOfPageBox;
}

QPushButton *GRStoresDialog::okButton() const
{
    return m_ui->buttonBox->button(QDialogButtonBox::Ok);
}
