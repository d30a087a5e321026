#include "MGPeoplePicker.h"

#include "MGLog.h"
#include "ui_MGPeoplePicker.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace {

QSettings pickerSettings()
{
    return QSettings(QStringLiteral("Marlowick"), QStringLiteral("Groceries"));
}

} // namespace

QString MGPeoplePicker::pickEmail(QString *firstName, QWidget *anchor)
{
    QWidget *window = anchor ? anchor->window() : nullptr;
    MGPeoplePicker picker(window);
    picker.adjustSize();
    if (window) {
        // Before it is shown the picker has no frame; it will get one like the anchor's.
        const QSize frame = window->frameGeometry().size() - window->geometry().size();
        picker.move(placement(window->frameGeometry(), picker.size() + frame));
    }
    if (picker.exec() != QDialog::Accepted)
        return QString();
    return picker.email(firstName);
}

QPoint MGPeoplePicker::placement(const QRect &anchor, const QSize &picker)
{
    const int x = anchor.x() - int(std::floor((picker.width() - anchor.width()) * 0.5));
    return QPoint(x, anchor.y() + AnchorTopOffset);
}

MGPeoplePicker::MGPeoplePicker(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::MGPeoplePicker>())
{
    m_ui->setupUi(this);
    connect(m_ui->chooseFileButton, &QPushButton::clicked, this, &MGPeoplePicker::chooseFile);
    connect(m_ui->peopleList, &QListWidget::currentRowChanged, this, &MGPeoplePicker::showPerson);
    connect(m_ui->emailList, &QListWidget::currentRowChanged, this, &MGPeoplePicker::showAddress);
    connect(m_ui->emailList, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(m_ui->emailField, &QLineEdit::textChanged, this,
            [this](const QString &text) { okButton()->setEnabled(!text.trimmed().isEmpty()); });
    connect(m_ui->emailField, &QLineEdit::textEdited, this, [this] { m_typed = true; });
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    okButton()->setEnabled(false);

    const QString path = pickerSettings().value(QLatin1String(VCardPathKey)).toString();
    if (!path.isEmpty() && QFileInfo::exists(path))
        loadFile(path);
}

MGPeoplePicker::~MGPeoplePicker() = default;

bool MGPeoplePicker::loadFile(const QString &path)
{
    QString error;
    std::optional<QList<MGVCardReader::Person>> people = MGVCardReader::readFile(path, &error);
    if (!people) {
        MGLog(QStringLiteral("Can't read address book %1: %2").arg(path, error));
        m_ui->fileLabel->setText(tr("Can't read %1: %2").arg(QFileInfo(path).fileName(), error));
        return false;
    }
    m_people = std::move(*people);
    std::stable_sort(m_people.begin(), m_people.end(), [](const auto &a, const auto &b) {
        return QString::localeAwareCompare(a.fullName, b.fullName) < 0;
    });
    m_ui->fileLabel->setText(QFileInfo(path).fileName());
    m_ui->fileLabel->setToolTip(path);
    m_ui->peopleList->clear();
    for (const MGVCardReader::Person &person : std::as_const(m_people))
        m_ui->peopleList->addItem(person.fullName.isEmpty() ? person.emails.value(0) : person.fullName);
    pickerSettings().setValue(QLatin1String(VCardPathKey), path);
    return true;
}

void MGPeoplePicker::chooseFile()
{
    const QString current = pickerSettings().value(QLatin1String(VCardPathKey)).toString();
    const QString path = QFileDialog::getOpenFileName(this, tr("Choose an Address Book"), current,
                                                      tr("vCard files (*.vcf *.vcard);;All files (*)"));
    if (!path.isEmpty())
        loadFile(path);
}

void MGPeoplePicker::showPerson(int row)
{
    m_ui->emailList->clear();
    if (row < 0 || row >= m_people.size())
        return;
    m_ui->emailList->addItems(m_people.at(row).emails);
    if (m_ui->emailList->count() > 0) {
        m_ui->emailList->setCurrentRow(0);
    } else {
        m_ui->emailField->clear();
        m_typed = false;
    }
}

void MGPeoplePicker::showAddress(int row)
{
    if (row < 0)
        return;
    m_ui->emailField->setText(m_ui->emailList->item(row)->text());
    m_typed = false;
}

const MGVCardReader::Person *MGPeoplePicker::selectedPerson() const
{
    const int row = m_ui->peopleList->currentRow();
    return row >= 0 && row < m_people.size() ? &m_people.at(row) : nullptr;
}

QString MGPeoplePicker::email(QString *firstName) const
{
    const QString address = m_ui->emailField->text().trimmed();
    if (address.isEmpty())
        return QString();
    const MGVCardReader::Person *person = m_typed ? nullptr : selectedPerson();
    if (firstName) {
        if (person && person->firstName.isEmpty())
            return QString();
        *firstName = person ? person->firstName : QString();
    }
    return address;
}

QListWidget *MGPeoplePicker::peopleList() const
{
    return m_ui->peopleList;
}

QListWidget *MGPeoplePicker::emailList() const
{
    return m_ui->emailList;
}

QLineEdit *MGPeoplePicker::emailField() const
{
    return m_ui->emailField;
}

QPushButton *MGPeoplePicker::okButton() const
{
    return m_ui->buttonBox->button(QDialogButtonBox::Ok);
}
