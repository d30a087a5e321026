#pragma once

#include <QDialog>

#include <memory>

class QAbstractButton;
namespace Ui {
class Template;
}

// Asks how to begin when there is no readable grocery database: one of the starter templates,
// the built-in minimal list, or (when offered) the backup of the last saved version. The answer
// is a template number: 0 to 3, 4 for cancel and 5 for the backup.
class GRTemplateDialog : public QDialog
{
    Q_OBJECT

public:
    explicit GRTemplateDialog(bool offerRestore, QWidget *parent = nullptr);
    ~GRTemplateDialog() override;

    // Runs the dialog application-modal, centred on the screen, and answers the choice.
    static int selectTemplate(bool offerRestore);

    int templateOption() const { return m_templateOption; }
    void setTemplateOption(int option);

    void handleOK();
    void handleCancel();

    void reject() override;

private:
    QAbstractButton *buttonForOption(int option) const;

    std::unique_ptr<Ui::Template> m_ui;
    int m_templateOption = 1;
};
