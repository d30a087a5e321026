#pragma once

#include <QDialog>
#include <QFont>

#include <functional>
#include <memory>
#include <optional>

class GRGroceryDatabase;
class GROrderTableModel;
class QLabel;
class QLineEdit;
class QSpinBox;
class QTableView;
namespace Ui {
class Preferences;
}

// The preferences window: the aisle and category orders as reorderable tables, the list and print
// fonts with previews, the column count, the key legend, delete confirmation and the address the
// list is e-mailed to. Controls act on GRPrefController and the database at once; nothing is
// written to disk here.
class GRPreferencesWindow : public QDialog
{
    Q_OBJECT

public:
    // The chosen font, or nothing when the user cancels.
    using FontChooser = std::function<std::optional<QFont>(const QFont &current, QWidget *parent)>;
    // The chosen address; empty when the user cancels.
    using EmailChooser = std::function<QString(QWidget *anchor)>;

    static constexpr double MaxFontPoints = 24.0;

    explicit GRPreferencesWindow(GRGroceryDatabase &database, QWidget *parent = nullptr);
    ~GRPreferencesWindow() override;

    // The font at no more than MaxFontPoints.
    static QFont cappedFont(const QFont &font);
    // "<family> <points> point", the size with one decimal.
    static QString previewText(const QFont &font);

    void setFontChooser(FontChooser chooser) { m_fontChooser = std::move(chooser); }
    void setEmailChooser(EmailChooser chooser) { m_emailChooser = std::move(chooser); }

    // Brings tables, previews and controls up to date and the window to the front.
    void showPreferences();
    // Asks for the list font (display) or the print font.
    void selectFont(bool display);
    // Takes a font from the chooser for whichever font selectFont() asked for.
    void changeFont(const QFont &font);
    void changeColumns(int columns);
    void chooseEmail();
    void resetOrder();

    QTableView *aisleTable() const;
    QTableView *categoryTable() const;
    QLabel *displayFontSample() const;
    QLabel *fontSample() const;
    QSpinBox *columnsField() const;
    QLineEdit *emailField() const;

signals:
    // The user switched the key legend; the main window shows or hides it.
    void showKeysChanged(bool show);

private:
    void setUpTable(QTableView *table, GROrderTableModel *model);
    void rowDropped(QTableView *table, int target);
    void refreshControls();
    static void showPreview(const QFont &font, QLabel *view);

    std::unique_ptr<Ui::Preferences> m_ui;
    GRGroceryDatabase &m_database;
    GROrderTableModel *m_aisleModel;
    GROrderTableModel *m_categoryModel;
    FontChooser m_fontChooser;
    EmailChooser m_emailChooser;
};
