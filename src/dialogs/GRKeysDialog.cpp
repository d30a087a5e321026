#include "GRKeysDialog.h"

#include "GRKeyNames.h"
#include "ui_EditKeys.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

GRKeysDialog *GRKeysDialog::editKeys(QWidget *window)
{
    auto *dialog = new GRKeysDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->open();
    return dialog;
}

GRKeysDialog::GRKeysDialog(QWidget *parent) : QDialog(parent), m_ui(std::make_unique<Ui::EditKeys>())
{
    m_ui->setupUi(this);
    m_fields = {m_ui->key0Field, m_ui->key1Field, m_ui->key2Field,
                m_ui->key3Field, m_ui->key4Field, m_ui->key5Field};
    const QList<QLabel *> labels = {m_ui->key0Label, m_ui->key1Label, m_ui->key2Label,
                                    m_ui->key3Label, m_ui->key4Label, m_ui->key5Label};
    QFont markFont = font();
    markFont.setPointSizeF(markFont.pointSizeF() * 1.4);
    for (int i = 0; i < int(m_fields.size()); ++i) {
        labels[i]->setText(keyCharacters().at(i));
        labels[i]->setFont(markFont);
        labels[i]->setBuddy(m_fields[i]);
        connect(m_fields[i], &QLineEdit::textEdited, this,
                [this, i](const QString &text) { m_keys[i] = text; });
    }
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &GRKeysDialog::ok);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &GRKeysDialog::cancel);
    QPushButton *resetButton = m_ui->buttonBox->button(QDialogButtonBox::Reset);
    resetButton->setText(tr("Use Default Names"));
    connect(resetButton, &QPushButton::clicked, this, &GRKeysDialog::reset);

    if (g_customKeyNames.size() != g_defaultKeyNames.size()) {
        reset();
    } else {
        m_keys = g_customKeyNames;
        updateKeyFields();
    }
    m_fields.first()->setFocus();
    m_fields.first()->selectAll();
}

GRKeysDialog::~GRKeysDialog() = default;

QLineEdit *GRKeysDialog::keyField(int index) const
{
    return m_fields.value(index);
}

void GRKeysDialog::reset()
{
    m_keys = g_defaultKeyNames;
    updateKeyFields();
}

void GRKeysDialog::updateKeyFields()
{
    for (int i = 0; i < int(m_fields.size()); ++i)
        m_fields[i]->setText(m_keys.value(i));
}

void GRKeysDialog::ok()
{
    g_customKeyNames = CustomKeyNamesAfterOK(g_customKeyNames, m_keys);
    BuildKeyStrings();
    emit keyStringsChanged();
    done(QDialog::Accepted);
}

void GRKeysDialog::cancel()
{
    done(QDialog::Rejected);
}
