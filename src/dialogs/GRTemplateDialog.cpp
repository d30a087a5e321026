#include "GRTemplateDialog.h"

#include "GRDatabaseFile.h"
#include "ui_Template.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>

GRTemplateDialog::GRTemplateDialog(bool offerRestore, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::Template>())
{
    m_ui->setupUi(this);

    m_ui->headingLabel->setContentsMargins(0, 0, 0, 6);
    QFont heading = m_ui->headingLabel->font();
    heading.setBold(true);
    heading.setPointSizeF(heading.pointSizeF() * 1.3);
    m_ui->headingLabel->setFont(heading);
    for (QLabel *description :
         {m_ui->restoreDescription, m_ui->omnivoreDescription, m_ui->vegetarianDescription,
          m_ui->veganDescription, m_ui->emptyDescription}) {
        description->setForegroundRole(QPalette::PlaceholderText);
        description->setContentsMargins(0, 0, 0, 10);
    }

    m_ui->restoreGroup->setVisible(offerRestore);
    if (offerRestore) {
        m_ui->introLabel->setText(tr("The grocery list could not be opened, but the version saved before it "
                                     "can still be read. Restore it, or start again from one of these."));
    }

    const struct
    {
        QRadioButton *button;
        int option;
    } choices[] = {
        {m_ui->emptyButton, GRTemplateNone},
        {m_ui->omnivoreButton, GRTemplateOmnivore},
        {m_ui->vegetarianButton, GRTemplateVegetarian},
        {m_ui->veganButton, GRTemplateVegan},
        {m_ui->restoreButton, GRTemplateRestore},
    };
    for (const auto &choice : choices) {
        const int option = choice.option;
        connect(choice.button, &QRadioButton::toggled, this, [this, option](bool on) {
            if (on)
                m_templateOption = option;
        });
    }
    setTemplateOption(offerRestore ? GRTemplateRestore : GRTemplateOmnivore);

    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &GRTemplateDialog::handleOK);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &GRTemplateDialog::handleCancel);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setDefault(true);
    buttonForOption(m_templateOption)->setFocus();

    adjustSize();
    setFixedSize(width(), layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width()) : height());
}

GRTemplateDialog::~GRTemplateDialog() = default;

QAbstractButton *GRTemplateDialog::buttonForOption(int option) const
{
    switch (option) {
    case GRTemplateNone:
        return m_ui->emptyButton;
    case GRTemplateVegetarian:
        return m_ui->vegetarianButton;
    case GRTemplateVegan:
        return m_ui->veganButton;
    case GRTemplateRestore:
        return m_ui->restoreButton;
    default:
        return m_ui->omnivoreButton;
    }
}

void GRTemplateDialog::setTemplateOption(int option)
{
    const bool known = (option >= GRTemplateNone && option <= GRTemplateVegan) ||
                       (option == GRTemplateRestore && !m_ui->restoreGroup->isHidden());
    m_templateOption = known ? option : int(GRTemplateOmnivore);
    buttonForOption(m_templateOption)->setChecked(true);
}

void GRTemplateDialog::handleOK()
{
    done(m_templateOption);
}

void GRTemplateDialog::handleCancel()
{
    done(GRTemplateCancel);
}

void GRTemplateDialog::reject()
{
    handleCancel();
}

int GRTemplateDialog::selectTemplate(bool offerRestore)
{
    GRTemplateDialog dialog(offerRestore);
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        dialog.move(available.center() - dialog.rect().center());
    }
    return dialog.exec();
}
