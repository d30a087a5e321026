#pragma once

#include <QDialog>
#include <QStringList>

#include <memory>

class QLineEdit;
namespace Ui {
class EditKeys;
}

// The sheet that renames the six key marks. The fields edit a private list of names; only OK
// changes the names in use and rebuilds the legend lines.
class GRKeysDialog : public QDialog
{
    Q_OBJECT

public:
    // Opens the sheet window-modal on window; it deletes itself when it closes.
    static GRKeysDialog *editKeys(QWidget *window);

    explicit GRKeysDialog(QWidget *parent = nullptr);
    ~GRKeysDialog() override;

    const QStringList &keys() const { return m_keys; }
    QLineEdit *keyField(int index) const;

    // Back to the default names, in the fields only.
    void reset();
    void updateKeyFields();
    void ok();
    void cancel();

    void accept() override { ok(); }
    void reject() override { cancel(); }

signals:
    // The names in use changed and the legend lines were rebuilt.
    void keyStringsChanged();

private:
    std::unique_ptr<Ui::EditKeys> m_ui;
    QList<QLineEdit *> m_fields;
    QStringList m_keys;
};
