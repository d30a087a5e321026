#include "GRPreferencesWindow.h"

#include "GRGroceryDatabase.h"
#include "GRNames.h"
#include "GROrderTableModel.h"
#include "GRPrefController.h"
#include "MGNotificationCenter.h"
#include "MGPeoplePicker.h"
#include "ui_Preferences.h"

#include <QFontDialog>
#include <QFontInfo>
#include <QHeaderView>

namespace {

double pointSize(const QFont &font)
{
    return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
}

} // namespace

GRPreferencesWindow::GRPreferencesWindow(GRGroceryDatabase &database, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::Preferences>()), m_database(database),
      m_aisleModel(new GROrderTableModel(GROrderTableModel::Kind::Aisles, database, this)),
      m_categoryModel(new GROrderTableModel(GROrderTableModel::Kind::Categories, database, this)),
      m_fontChooser([](const QFont &current, QWidget *window) -> std::optional<QFont> {
          bool ok = false;
          const QFont font = QFontDialog::getFont(&ok, current, window, tr("Fonts"));
          return ok ? std::optional<QFont>(font) : std::nullopt;
      }),
      m_emailChooser([](QWidget *anchor) { return MGPeoplePicker::pickEmail(nullptr, anchor); })
{
    m_ui->setupUi(this);
    setUpTable(m_ui->aisleTable, m_aisleModel);
    setUpTable(m_ui->categoryTable, m_categoryModel);
    for (QLabel *sample : {m_ui->displayFontSample, m_ui->fontSample}) {
        sample->setBackgroundRole(QPalette::Base);
        sample->setForegroundRole(QPalette::Text);
        sample->setAutoFillBackground(true);
    }

    GRPrefController &prefs = GRPrefController::sharedInstance();
    connect(&prefs, &GRPrefController::categoryTableChanged, m_categoryModel, &GROrderTableModel::reload);
    connect(m_ui->resetOrderButton, &QPushButton::clicked, this, &GRPreferencesWindow::resetOrder);
    connect(m_ui->displayFontButton, &QPushButton::clicked, this, [this] { selectFont(true); });
    connect(m_ui->fontButton, &QPushButton::clicked, this, [this] { selectFont(false); });
    connect(m_ui->columnsField, &QSpinBox::valueChanged, this, &GRPreferencesWindow::changeColumns);
    connect(m_ui->showKeysBox, &QCheckBox::toggled, this, [this](bool show) {
        GRPrefController::sharedInstance().setShowKeys(show);
        emit showKeysChanged(show);
    });
    connect(m_ui->confirmDeleteBox, &QCheckBox::toggled, this,
            [](bool confirm) { GRPrefController::sharedInstance().setConfirmDelete(confirm); });
    connect(m_ui->emailField, &QLineEdit::textEdited, this,
            [](const QString &text) { GRPrefController::sharedInstance().setEmailTarget(text.trimmed()); });
    connect(m_ui->chooseEmailButton, &QPushButton::clicked, this, &GRPreferencesWindow::chooseEmail);
    refreshControls();
}

GRPreferencesWindow::~GRPreferencesWindow() = default;

void GRPreferencesWindow::setUpTable(QTableView *table, GROrderTableModel *model)
{
    table->setModel(model);
    table->horizontalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->setShowGrid(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    // Rows move only within their own table.
    table->setDragDropMode(QAbstractItemView::InternalMove);
    table->setDefaultDropAction(Qt::MoveAction);
    table->setDragDropOverwriteMode(false);
    table->setDropIndicatorShown(true);
    connect(model, &GROrderTableModel::rowDropped, this,
            [this, table](int target) { rowDropped(table, target); });
}

void GRPreferencesWindow::rowDropped(QTableView *table, int target)
{
    table->selectRow(target);
    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.setDirty(true);
    emit prefs.markWindowEdited();
}

void GRPreferencesWindow::refreshControls()
{
    const GRPrefController &prefs = GRPrefController::sharedInstance();
    const QSignalBlocker columnsBlocker(m_ui->columnsField);
    const QSignalBlocker keysBlocker(m_ui->showKeysBox);
    const QSignalBlocker confirmBlocker(m_ui->confirmDeleteBox);
    m_ui->columnsField->setValue(
        int(qMin<quint64>(m_database.columnCount(), quint64(m_ui->columnsField->maximum()))));
    m_ui->showKeysBox->setChecked(prefs.showKeys());
    m_ui->confirmDeleteBox->setChecked(prefs.confirmDelete());
    if (!m_ui->emailField->hasFocus())
        m_ui->emailField->setText(prefs.emailTarget());
    showPreview(prefs.displayFont(), m_ui->displayFontSample);
    showPreview(prefs.printFont(), m_ui->fontSample);
}

void GRPreferencesWindow::showPreferences()
{
    m_aisleModel->reload();
    // A database read at start-up holds no category order until the categories are announced.
    GRPrefController::sharedInstance().updateCategories(m_database);
    refreshControls();
    show();
    raise();
    activateWindow();
}

QFont GRPreferencesWindow::cappedFont(const QFont &font)
{
    QFont capped = font;
    if (pointSize(font) > MaxFontPoints)
        capped.setPointSizeF(MaxFontPoints);
    return capped;
}

QString GRPreferencesWindow::previewText(const QFont &font)
{
    const QString family = font.family().isEmpty() ? QFontInfo(font).family() : font.family();
    return QStringLiteral("%1 %2 point").arg(family, QString::number(pointSize(font), 'f', 1));
}

void GRPreferencesWindow::showPreview(const QFont &font, QLabel *view)
{
    view->setFont(font);
    view->setText(previewText(font));
}

void GRPreferencesWindow::selectFont(bool display)
{
    GRPrefController &prefs = GRPrefController::sharedInstance();
    prefs.setChangingDisplay(display);
    if (const std::optional<QFont> font =
            m_fontChooser(display ? prefs.displayFont() : prefs.printFont(), this))
        changeFont(*font);
}

void GRPreferencesWindow::changeFont(const QFont &font)
{
    GRPrefController &prefs = GRPrefController::sharedInstance();
    const QFont chosen = cappedFont(font);
    if (prefs.changingDisplay()) {
        prefs.setDisplayFont(chosen);
        showPreview(chosen, m_ui->displayFontSample);
        MGNotificationCenter::defaultCenter().post(GRFontNotification);
    } else {
        prefs.setPrintFont(chosen);
        showPreview(chosen, m_ui->fontSample);
    }
}

void GRPreferencesWindow::changeColumns(int columns)
{
    if (columns < 1 || quint64(columns) == m_database.columnCount())
        return;
    m_database.setColumnCount(quint64(columns));
    // The column count is saved with the database, but alone it is no reason to ask at quit.
    emit GRPrefController::sharedInstance().markWindowEdited();
}

void GRPreferencesWindow::chooseEmail()
{
    const QString address = m_emailChooser(this);
    if (address.isEmpty())
        return;
    GRPrefController::sharedInstance().setEmailTarget(address);
    m_ui->emailField->setText(address);
}

void GRPreferencesWindow::resetOrder()
{
    GRPrefController::sharedInstance().resetOrder(m_database);
}

QTableView *GRPreferencesWindow::aisleTable() const
{
    return m_ui->aisleTable;
}

QTableView *GRPreferencesWindow::categoryTable() const
{
    return m_ui->categoryTable;
}

QLabel *GRPreferencesWindow::displayFontSample() const
{
    return m_ui->displayFontSample;
}

QLabel *GRPreferencesWindow::fontSample() const
{
    return m_ui->fontSample;
}

QSpinBox *GRPreferencesWindow::columnsField() const
{
    return m_ui->columnsField;
}

QLineEdit *GRPreferencesWindow::emailField() const
{
    return m_ui->emailField;
}
