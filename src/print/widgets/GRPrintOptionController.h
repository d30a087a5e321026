#pragma once

#include <QString>
#include <QWidget>

#include <memory>

class GRGroceryDatabase;
class GRPrefController;
class QAbstractButton;
class QCheckBox;
class QComboBox;
namespace Ui {
class PrintOptionsView;
}

// The print scope choices shown beside the preview and as a tab of the print dialog. Every
// choice goes into the preferences at once; there is nothing to take back on Cancel.
class GRPrintOptionController : public QWidget
{
    Q_OBJECT

public:
    GRPrintOptionController(const GRGroceryDatabase &database, GRPrefController &preferences,
                            QWidget *parent = nullptr);
    ~GRPrintOptionController() override;

    qint32 printScope() const { return m_printScope; }
    void setPrintScope(qint32 scope);
    const QString &storeGuid() const { return m_storeGuid; }
    void setStoreGuid(const QString &guid) { m_storeGuid = guid; }
    bool ignorePageStarts() const { return m_ignorePageStarts; }
    void setIgnorePageStarts(bool ignore) { m_ignorePageStarts = ignore; }

    // index is a row of the database's store list; negative means no choice.
    void setStore(int index);
    void setIgnoreStarts(bool checked);

    static QString summaryName();
    QString localizedSummary() const;

    QComboBox *storePopup() const;
    QCheckBox *ignorePageStartButton() const;
    QAbstractButton *scopeButton(qint32 scope) const;

signals:
    void summaryChanged();
    // The scope, the store or the page-start choice changed: the preview must be laid out again.
    void previewChanged();

private:
    void fillControls();
    void updateControls();

    std::unique_ptr<Ui::PrintOptionsView> m_ui;
    const GRGroceryDatabase &m_database;
    GRPrefController &m_preferences;
    QString m_storeGuid;
    qint32 m_printScope = 0;
    // Starts false whatever the preference says, so the summary only mentions page starts once
    // the box has been toggled here.
    bool m_ignorePageStarts = false;
};
