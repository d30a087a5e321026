#include "MGVCardReader.h"

#include <QFile>

namespace {

// Splits at the separators that no backslash escapes; the parts keep their escapes.
QStringList splitUnescaped(const QString &text, QChar separator)
{
    QStringList parts;
    QString part;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('\\') && i + 1 < text.size()) {
            part += c;
            part += text.at(++i);
        } else if (c == separator) {
            parts.append(part);
            part.clear();
        } else {
            part += c;
        }
    }
    parts.append(part);
    return parts;
}

QString unescape(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        QChar c = text.at(i);
        if (c == QLatin1Char('\\') && i + 1 < text.size()) {
            c = text.at(++i);
            if (c == QLatin1Char('n') || c == QLatin1Char('N'))
                c = QLatin1Char('\n');
        }
        plain += c;
    }
    return plain.trimmed();
}

// Physical lines joined where a line starting with a space or tab continues the one before.
QStringList unfoldedLines(const QString &text)
{
    QStringList lines;
    qsizetype start = 0;
    while (start <= text.size()) {
        qsizetype end = start;
        while (end < text.size() && text.at(end) != QLatin1Char('\n') && text.at(end) != QLatin1Char('\r'))
            ++end;
        const QStringView line = QStringView(text).mid(start, end - start);
        if (!line.isEmpty() && (line.front() == QLatin1Char(' ') || line.front() == QLatin1Char('\t')) &&
            !lines.isEmpty())
            lines.last() += line.mid(1);
        else
            lines.append(line.toString());
        if (end + 1 < text.size() && text.at(end) == QLatin1Char('\r') &&
            text.at(end + 1) == QLatin1Char('\n'))
            ++end;
        start = end + 1;
    }
    return lines;
}

qsizetype unquotedColon(const QString &line)
{
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line.at(i) == QLatin1Char('"'))
            quoted = !quoted;
        else if (line.at(i) == QLatin1Char(':') && !quoted)
            return i;
    }
    return -1;
}

// "PREF" (version 2.1), "TYPE=...,pref,..." (3) or "PREF=n" (4).
bool isPreferred(const QStringList &parameters)
{
    for (const QString &parameter : parameters) {
        const QString name = parameter.section(QLatin1Char('='), 0, 0).trimmed();
        if (name.compare(QLatin1String("PREF"), Qt::CaseInsensitive) == 0)
            return true;
        if (name.compare(QLatin1String("TYPE"), Qt::CaseInsensitive) != 0)
            continue;
        QString types = parameter.section(QLatin1Char('='), 1);
        types.remove(QLatin1Char('"'));
        if (types.split(QLatin1Char(',')).contains(QLatin1String("pref"), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

struct Card
{
    MGVCardReader::Person person;
    QStringList preferred;
    QString givenName;
    QString familyName;

    void read(const QString &name, const QStringList &parameters, const QString &value)
    {
        if (name == QLatin1String("FN")) {
            person.fullName = unescape(value);
        } else if (name == QLatin1String("N")) {
            const QStringList parts = splitUnescaped(value, QLatin1Char(';'));
            familyName = unescape(splitUnescaped(parts.value(0), QLatin1Char(',')).first());
            givenName = unescape(splitUnescaped(parts.value(1), QLatin1Char(',')).first());
        } else if (name == QLatin1String("EMAIL")) {
            const QString address = unescape(value);
            if (address.isEmpty())
                return;
            (isPreferred(parameters) ? preferred : person.emails).append(address);
        }
    }

    bool finish()
    {
        person.firstName = givenName;
        person.emails = preferred + person.emails;
        if (person.fullName.isEmpty())
            person.fullName = (givenName + QLatin1Char(' ') + familyName).trimmed();
        return !person.fullName.isEmpty() || !person.emails.isEmpty();
    }
};

} // namespace

QList<MGVCardReader::Person> MGVCardReader::readPeople(const QByteArray &bytes)
{
    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);

    QList<Person> people;
    Card card;
    int depth = 0; // cards nested in a card (an agent's) are skipped
    for (const QString &line : unfoldedLines(text)) {
        const qsizetype colon = unquotedColon(line);
        if (colon < 0)
            continue;
        QStringList parameters = line.left(colon).split(QLatin1Char(';'));
        QString name = parameters.takeFirst().trimmed().toUpper();
        name = name.mid(name.lastIndexOf(QLatin1Char('.')) + 1); // drop the group
        const QString value = line.mid(colon + 1);
        const bool isCard = value.trimmed().compare(QLatin1String("VCARD"), Qt::CaseInsensitive) == 0;
        if (name == QLatin1String("BEGIN") && isCard) {
            if (depth++ == 0)
                card = Card();
        } else if (name == QLatin1String("END") && isCard) {
            if (depth > 0 && --depth == 0 && card.finish())
                people.append(card.person);
        } else if (depth == 1) {
            card.read(name, parameters, value);
        }
    }
    // A file cut off inside a card still yields what the card held.
    if (depth > 0 && card.finish())
        people.append(card.person);
    return people;
}

std::optional<QList<MGVCardReader::Person>> MGVCardReader::readFile(const QString &path, QString *error)
{
    QFile file(path);
    QString problem;
    if (!file.open(QIODevice::ReadOnly))
        problem = file.errorString();
    else if (file.size() > MaxFileSize)
        problem = QStringLiteral("the file is too large");
    if (problem.isEmpty()) {
        const QByteArray bytes = file.readAll();
        if (file.error() == QFileDevice::NoError)
            return readPeople(bytes);
        problem = file.errorString();
    }
    if (error)
        *error = problem;
    return std::nullopt;
}
