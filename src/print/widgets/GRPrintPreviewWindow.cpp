#include "GRPrintPreviewWindow.h"

#include "GRPrefController.h"
#include "GRPrintOptionController.h"
#include "MGAlert.h"
#include "MGLog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QToolBar>
#include <QVBoxLayout>

#include <cmath>
#include <tuple>

namespace {

std::function<bool(QPrintDialog &)> &dialogRunner()
{
    static std::function<bool(QPrintDialog &)> runner;
    return runner;
}

} // namespace

GRPrintPreviewWindow *GRPrintPreviewWindow::printGroceries(const GRGroceryDatabase &database,
                                                           GRPrefController &preferences, QWidget *window)
{
    auto *dialog = new GRPrintPreviewWindow(database, preferences, window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->open();
    return dialog;
}

void GRPrintPreviewWindow::setPrintDialogRunner(std::function<bool(QPrintDialog &)> runner)
{
    dialogRunner() = std::move(runner);
}

GRPrintPreviewWindow::GRPrintPreviewWindow(const GRGroceryDatabase &database, GRPrefController &preferences,
                                           QWidget *parent)
    : QDialog(parent), m_database(database), m_preferences(preferences), m_view(database),
      m_printer(QPrinter::HighResolution)
{
    setWindowTitle(tr("Print"));
    m_printer.setDocName(QLatin1String(GRPrintView::JobTitle));
    applyPageLayout();

    m_preview = new QPrintPreviewWidget(&m_printer, this);
    m_preview->setZoomMode(QPrintPreviewWidget::FitToWidth);
    connect(m_preview, &QPrintPreviewWidget::paintRequested, this, [this](QPrinter *printer) { printTo(*printer); });

    auto *zoom = new QToolBar(this);
    const std::tuple<QString, QKeySequence, std::function<void()>> zoomActions[] = {
        {tr("Fit Width"), QKeySequence(), [this] { m_preview->fitToWidth(); }},
        {tr("Fit Page"), QKeySequence(), [this] { m_preview->fitInView(); }},
        {tr("Zoom Out"), QKeySequence::ZoomOut, [this] { m_preview->zoomOut(); }},
        {tr("Zoom In"), QKeySequence::ZoomIn, [this] { m_preview->zoomIn(); }},
    };
    for (const auto &[text, shortcut, run] : zoomActions) {
        QAction *action = zoom->addAction(text);
        action->setShortcut(shortcut);
        connect(action, &QAction::triggered, this, run);
    }

    m_scale = new QSpinBox(this);
    m_scale->setRange(10, 400);
    m_scale->setSuffix(QStringLiteral(" %"));
    m_scale->setValue(int(std::lround(m_preferences.printInfo().scale() * 100)));
    connect(m_scale, &QSpinBox::valueChanged, this, [this](int percent) {
        m_preferences.printInfo().setScale(percent / 100.0);
        refresh();
    });
    auto *scaleForm = new QFormLayout;
    scaleForm->addRow(tr("&Scale:"), m_scale);

    m_summary = new QLabel(this);
    m_summary->setWordWrap(true);
    m_pages = new QLabel(this);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *setup = buttons->addButton(tr("Page Set&up…"), QDialogButtonBox::ActionRole);
    m_printButton = buttons->addButton(tr("&Print…"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    m_printButton->setDefault(true);
    connect(setup, &QPushButton::clicked, this, &GRPrintPreviewWindow::pageSetup);
    connect(buttons, &QDialogButtonBox::accepted, this, &GRPrintPreviewWindow::print);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    m_side = new QVBoxLayout;
    m_side->addLayout(scaleForm);
    m_side->addStretch(1);
    m_side->addWidget(m_summary);
    m_side->addWidget(m_pages);
    auto *previewColumn = new QVBoxLayout;
    previewColumn->addWidget(zoom);
    previewColumn->addWidget(m_preview, 1);
    auto *body = new QHBoxLayout;
    body->addLayout(previewColumn, 1);
    body->addLayout(m_side);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addWidget(buttons);

    installOptions();
    resize(900, 680);
}

GRPrintPreviewWindow::~GRPrintPreviewWindow() = default;

void GRPrintPreviewWindow::installOptions()
{
    // Rebuilt from the preferences, which the print dialog's own copy may have changed.
    delete m_options;
    m_options = new GRPrintOptionController(m_database, m_preferences, this);
    m_side->insertWidget(0, m_options);
    connect(m_options, &GRPrintOptionController::previewChanged, this, &GRPrintPreviewWindow::refresh);
    connect(m_options, &GRPrintOptionController::summaryChanged, this, &GRPrintPreviewWindow::updateSummary);
    refresh();
}

void GRPrintPreviewWindow::applyPageLayout()
{
    m_printer.setPageLayout(GRPrintView::printPageLayout(m_preferences.printInfo().pageLayout()));
}

bool GRPrintPreviewWindow::printTo(QPrinter &printer)
{
    m_view.setScope(GRPrintScope(m_preferences.printScope()), m_preferences.printStoreGuid(),
                    m_preferences.ignorePageStarts());
    m_view.setPrintFont(m_preferences.printFont());
    m_view.knowsPageRange(printer.pageLayout(), m_preferences.printInfo().scale());
    return m_view.render(printer, printer.pageRanges());
}

void GRPrintPreviewWindow::refresh()
{
    m_preview->updatePreview();
    updateSummary();
}

QString GRPrintPreviewWindow::summaryText() const
{
    return GRPrintOptionController::summaryName() + QStringLiteral(": ") + m_options->localizedSummary();
}

void GRPrintPreviewWindow::updateSummary()
{
    m_summary->setText(summaryText());
    const qsizetype pages = m_view.pageCount();
    m_pages->setText(pages == 0 ? tr("Nothing to print") : pages == 1 ? tr("1 page") : tr("%1 pages").arg(pages));
    m_printButton->setEnabled(pages > 0);
}

void GRPrintPreviewWindow::pageSetup()
{
    QPageSetupDialog dialog(&m_printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_preferences.printInfo().setPageLayout(m_printer.pageLayout());
    applyPageLayout();
    refresh();
}

void GRPrintPreviewWindow::print()
{
    QPrintDialog dialog(&m_printer, this);
    dialog.setWindowTitle(tr("Print"));
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange |
                      QAbstractPrintDialog::PrintShowPageSize | QAbstractPrintDialog::PrintCollateCopies);
    dialog.setMinMax(1, int(std::max<qsizetype>(m_view.pageCount(), 1)));
    dialog.setOptionTabs({new GRPrintOptionController(m_database, m_preferences)});
    const bool accepted = dialogRunner() ? dialogRunner()(dialog) : dialog.exec() == QDialog::Accepted;
    installOptions();
    if (!accepted)
        return;
    // The dialog may have changed the paper or its orientation; the margins stay ours.
    QPageLayout chosen = m_preferences.printInfo().pageLayout();
    chosen.setPageSize(m_printer.pageLayout().pageSize());
    chosen.setOrientation(m_printer.pageLayout().orientation());
    m_preferences.printInfo().setPageLayout(chosen);
    applyPageLayout();
    const bool success = printTo(m_printer);
    emit printed(success);
    if (success) {
        accept();
        return;
    }
    MGLog(QStringLiteral("Printing to %1 failed").arg(m_printer.outputFileName().isEmpty() ? m_printer.printerName()
                                                                                       : m_printer.outputFileName()));
    MGAlert::sharedInstance().giveAlertMessage(
        QStringLiteral("Printing failed."),
        QStringLiteral("The grocery list could not be printed. Check the printer or the file name, then try again."),
        {});
    refresh();
}
