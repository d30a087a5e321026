#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// Reads the people of a vCard file (versions 3 and 4, UTF-8) for the people picker: each card's
// name, first name and e-mail addresses. Anything it does not understand is skipped, so text of
// any kind gives some list of people.
class MGVCardReader
{
public:
    struct Person
    {
        QString fullName;   // FN, else the given and family names of N
        QString firstName;  // the given name of N
        QStringList emails; // preferred addresses first, otherwise in file order
    };

    // Files larger than this are refused rather than read whole.
    static constexpr qint64 MaxFileSize = 64 * 1024 * 1024;

    // The cards that name someone or carry an address, in file order.
    static QList<Person> readPeople(const QByteArray &bytes);
    // Nothing, and the reason in error, when the file cannot be read.
    static std::optional<QList<Person>> readFile(const QString &path, QString *error = nullptr);
};
