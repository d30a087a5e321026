#include "GRPrintOptionController.h"

#include "GRGroceryDatabase.h"
#include "GRPrefController.h"
#include "GRPrintPagination.h"
#include "GRPrintScope.h"
#include "GRStore.h"
#include "ui_PrintOptionsView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>

GRPrintOptionController::GRPrintOptionController(const GRGroceryDatabase &database,
                                                 GRPrefController &preferences, QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::PrintOptionsView>()), m_database(database),
      m_preferences(preferences), m_storeGuid(preferences.printStoreGuid()),
      m_printScope(preferences.printScope())
{
    m_ui->setupUi(this);
    for (qint32 scope = 0; scope <= 2; ++scope)
        connect(scopeButton(scope), &QAbstractButton::clicked, this, [this, scope] { setPrintScope(scope); });
    connect(m_ui->storePopup, &QComboBox::activated, this, &GRPrintOptionController::setStore);
    connect(m_ui->ignorePageStartButton, &QCheckBox::clicked, this,
            &GRPrintOptionController::setIgnoreStarts);
    fillControls();
}

GRPrintOptionController::~GRPrintOptionController() = default;

void GRPrintOptionController::fillControls()
{
    QComboBox *popup = m_ui->storePopup;
    popup->clear();
    // A remembered store that is gone gives way to the first one, and that is remembered instead.
    const QString guid = GRPrintPagination::storeGuidOrFirst(m_database, m_storeGuid);
    if (!guid.isEmpty() && guid != m_storeGuid) {
        m_storeGuid = guid;
        m_preferences.setPrintStoreGuid(guid);
    }
    int selected = -1;
    for (const GRStorePtr &store : m_database.stores()) {
        popup->addItem(store->name());
        if (selected < 0 && store->guid() == guid)
            selected = popup->count() - 1;
    }
    popup->setCurrentIndex(selected);
    m_ui->ignorePageStartButton->setChecked(m_preferences.ignorePageStarts());
    updateControls();
}

void GRPrintOptionController::updateControls()
{
    QAbstractButton *current = scopeButton(m_printScope);
    if (current) {
        current->setChecked(true);
    } else {
        // An exclusive radio cannot be unchecked directly.
        for (qint32 scope = 0; scope <= 2; ++scope) {
            QAbstractButton *button = scopeButton(scope);
            button->setAutoExclusive(false);
            button->setChecked(false);
            button->setAutoExclusive(true);
        }
    }
    m_ui->storePopup->setEnabled(m_printScope == qint32(GRPrintScope::OneStore));
    m_ui->ignorePageStartButton->setEnabled(m_printScope == qint32(GRPrintScope::NeededItems));
}

void GRPrintOptionController::setPrintScope(qint32 scope)
{
    m_printScope = scope;
    m_preferences.setPrintScope(scope);
    updateControls();
    emit summaryChanged();
    emit previewChanged();
}

void GRPrintOptionController::setStore(int index)
{
    const QList<GRStorePtr> &stores = m_database.stores();
    if (index < 0 || index >= stores.size())
        return;
    m_storeGuid = stores.at(index)->guid();
    m_preferences.setPrintStoreGuid(m_storeGuid);
    emit summaryChanged();
    emit previewChanged();
}

void GRPrintOptionController::setIgnoreStarts(bool checked)
{
    m_preferences.setIgnorePageStarts(checked);
    m_ignorePageStarts = checked;
    emit summaryChanged();
    emit previewChanged();
}

QString GRPrintOptionController::summaryName()
{
    return tr("Print scope");
}

QString GRPrintOptionController::localizedSummary() const
{
    switch (GRPrintScope(m_printScope)) {
    case GRPrintScope::NeededItems:
        return m_ignorePageStarts ? tr("Needed items only, ignoring forced page starts")
                                  : tr("Needed items only");
    case GRPrintScope::OneStore: {
        const GRStorePtr store = m_database.storeForGuid(m_storeGuid);
        return tr("Just one store: %1").arg(store ? store->name() : QString());
    }
    case GRPrintScope::EntireList:
        break;
    }
    return tr("Entire list");
}

QComboBox *GRPrintOptionController::storePopup() const
{
    return m_ui->storePopup;
}

QCheckBox *GRPrintOptionController::ignorePageStartButton() const
{
    return m_ui->ignorePageStartButton;
}

QAbstractButton *GRPrintOptionController::scopeButton(qint32 scope) const
{
    switch (GRPrintScope(scope)) {
    case GRPrintScope::EntireList:
        return m_ui->entireListButton;
    case GRPrintScope::NeededItems:
        return m_ui->neededItemsButton;
    case GRPrintScope::OneStore:
        return m_ui->oneStoreButton;
    }
    return nullptr;
}
