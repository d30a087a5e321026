// Feeds arbitrary bytes to the people picker's vCard reader. Every person it keeps names someone
// or has an address, and writing the people as a vCard file reads back as the same people.
#include "MGVCardReader.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdlib>

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

QString escaped(QString text)
{
    text.replace(u'\\', QLatin1String("\\\\"));
    text.replace(u'\n', QLatin1String("\\n"));
    text.replace(u',', QLatin1String("\\,"));
    text.replace(u';', QLatin1String("\\;"));
    return text;
}

QByteArray vCards(const QList<MGVCardReader::Person> &people)
{
    QString text;
    for (const MGVCardReader::Person &person : people) {
        text += QLatin1String("BEGIN:VCARD\r\nVERSION:3.0\r\n");
        if (!person.fullName.isEmpty())
            text += QLatin1String("FN:") + escaped(person.fullName) + QLatin1String("\r\n");
        text += QLatin1String("N:;") + escaped(person.firstName) + QLatin1String(";;;\r\n");
        for (const QString &email : person.emails)
            text += QLatin1String("EMAIL;TYPE=INTERNET:") + escaped(email) + QLatin1String("\r\n");
        text += QLatin1String("END:VCARD\r\n");
    }
    return text.toUtf8();
}

bool samePeople(const QList<MGVCardReader::Person> &a, const QList<MGVCardReader::Person> &b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i].fullName != b[i].fullName || a[i].firstName != b[i].firstName || a[i].emails != b[i].emails)
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const QList<MGVCardReader::Person> people = MGVCardReader::readPeople(bytes);
    for (const MGVCardReader::Person &person : people) {
        check(!person.fullName.isEmpty() || !person.emails.isEmpty());
        check(person.fullName == person.fullName.trimmed() && person.firstName == person.firstName.trimmed());
        for (const QString &email : person.emails)
            check(!email.isEmpty() && email == email.trimmed());
    }
    check(samePeople(MGVCardReader::readPeople(vCards(people)), people));
    return 0;
}
