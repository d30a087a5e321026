#pragma once

#include "MGVCardReader.h"

#include <QDialog>

#include <memory>

class QLineEdit;
class QListWidget;
class QPushButton;
namespace Ui {
class MGPeoplePicker;
}

// The address-book stand-in: lists the people of a vCard file the user chooses (remembered in the
// settings) with their e-mail addresses, and also takes an address typed by hand.
class MGPeoplePicker : public QDialog
{
    Q_OBJECT

public:
    static constexpr char VCardPathKey[] = "mwgroceries.vcardPath";
    static constexpr int AnchorTopOffset = 20;

    // Runs a picker over anchor's window; the address chosen, or empty when cancelled. When
    // firstName is given it receives the person's first name, and a person without one gives no
    // answer; a typed address comes with an empty first name.
    static QString pickEmail(QString *firstName, QWidget *anchor);
    // Centred horizontally over the anchor, its top AnchorTopOffset below the anchor's top.
    static QPoint placement(const QRect &anchor, const QSize &picker);

    // Opens the remembered vCard file, if any.
    explicit MGPeoplePicker(QWidget *parent = nullptr);
    ~MGPeoplePicker() override;

    // Lists the file's people and remembers the path; false, with the reason on show, when the
    // file cannot be read.
    bool loadFile(const QString &path);
    void chooseFile();
    // The answer as pickEmail() gives it after OK.
    QString email(QString *firstName) const;

    QListWidget *peopleList() const;
    QListWidget *emailList() const;
    QLineEdit *emailField() const;
    QPushButton *okButton() const;

private:
    void showPerson(int row);
    void showAddress(int row);
    const MGVCardReader::Person *selectedPerson() const;

    std::unique_ptr<Ui::MGPeoplePicker> m_ui;
    QList<MGVCardReader::Person> m_people;
    bool m_typed = false;
};
