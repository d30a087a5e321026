#pragma once

#include "GRPrintView.h"

#include <QDialog>
#include <QPrinter>

#include <functional>

class GRGroceryDatabase;
class GRPrefController;
class GRPrintOptionController;
class QLabel;
class QPrintDialog;
class QPrintPreviewWidget;
class QPushButton;
class QSpinBox;
class QVBoxLayout;

// The print command's window: the pages as they will print, beside the choice of what to print.
// Every change of an option lays the pages out again at once; Print hands them to the printer
// through the system's print dialog.
class GRPrintPreviewWindow : public QDialog
{
    Q_OBJECT

public:
    // Opens the window as a sheet on window (application-modal without one).
    static GRPrintPreviewWindow *printGroceries(const GRGroceryDatabase &database, GRPrefController &preferences,
                                                QWidget *window);
    // Replaces the print dialog, for tests: answers whether to print on the printer it is given.
    static void setPrintDialogRunner(std::function<bool(QPrintDialog &)> runner);

    GRPrintPreviewWindow(const GRGroceryDatabase &database, GRPrefController &preferences, QWidget *parent = nullptr);
    ~GRPrintPreviewWindow() override;

    GRPrintOptionController *options() const { return m_options; }
    QPrintPreviewWidget *preview() const { return m_preview; }
    QPrinter &printer() { return m_printer; }
    // "Print scope: Entire list" and the page count, as the window shows them.
    QString summaryText() const;
    qsizetype pageCount() const { return m_view.pageCount(); }

    // Shows the print dialog; when it is accepted, prints and closes the window.
    void print();
    void pageSetup();
    // Lays the pages out for printer and paints them, honouring its page ranges.
    bool printTo(QPrinter &printer);

signals:
    void printed(bool success);

private:
    void installOptions();
    void applyPageLayout();
    void refresh();
    void updateSummary();

    const GRGroceryDatabase &m_database;
    GRPrefController &m_preferences;
    GRPrintView m_view;
    QPrinter m_printer;
    QPrintPreviewWidget *m_preview = nullptr;
    GRPrintOptionController *m_options = nullptr;
    QVBoxLayout *m_side = nullptr;
    QSpinBox *m_scale = nullptr;
    QLabel *m_summary = nullptr;
    QLabel *m_pages = nullptr;
    QPushButton *m_printButton = nullptr;
};
