#include "MGVCardReader.h"

#include <QRandomGenerator>
#include <QTest>

// "full/first/address,address" per person, people joined by " | ".
static QString dump(const QList<MGVCardReader::Person> &people)
{
    QStringList lines;
    for (const MGVCardReader::Person &person : people)
        lines << person.fullName + '/' + person.firstName + '/' + person.emails.join(',');
    return lines.join(" | ");
}

class TestVCardReader : public QObject
{
    Q_OBJECT

private slots:
    void readPeople_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("people");
        QTest::newRow("folded, grouped, preferred last")
            << QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann Lee\r\nN:Lee;Ann;;;\r\n"
                          "item1.EMAIL;TYPE=INTERNET:ann@home.org\r\nEMAIL;TYPE=INTERNET,pref:ann@wo\r\n"
                          " rk.com\r\nEND:VCARD\r\n")
            << "Ann Lee/Ann/ann@work.com,ann@home.org";
        QTest::newRow("lower case, escapes, name from N")
            << QByteArray("begin:vcard\nn:Brien\\, O;Se\xC3\xA1n,Sean;;\nemail;pref=1:s@x.ie\nend:vcard")
            << QString::fromUtf8("Se\xC3\xA1n Brien, O/Se\xC3\xA1n/s@x.ie");
        QTest::newRow("address only, tab fold, BOM")
            << QByteArray("\xEF\xBB\xBF"
                          "BEGIN:VCARD\nEMAIL;X-L=\"a:b\":\n\tq@r\nEND:VCARD")
            << "//q@r";
        QTest::newRow("empty card and nested card skipped")
            << QByteArray("BEGIN:VCARD\nBEGIN:VCARD\nFN:Agent\nEND:VCARD\nEND:VCARD\n"
                          "BEGIN:VCARD\nFN:Bo\nEMAIL:\nEND:VCARD")
            << "Bo//";
        QTest::newRow("cut off") << QByteArray("FN:Outside\nBEGIN:VCARD\nFN:Cut") << "Cut//";
    }
    void readPeople()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, people);
        QCOMPARE(dump(MGVCardReader::readPeople(text)), people);
    }

    // Every prefix of a card and random bytes read without failing.
    void survivesJunk()
    {
        const QByteArray card("BEGIN:VCARD\r\nN:a\\;b;c\\\r\nEMAIL;TYPE=\"x:y\r\n :z@q\r\nEND:VCARD");
        for (qsizetype n = 0; n <= card.size(); ++n)
            QVERIFY(MGVCardReader::readPeople(card.left(n)).size() <= 1);
        const char alphabet[] = "BEGIN:VCARD\r\n\\;:\"\t ,=\xFF";
        QRandomGenerator random(7);
        for (int round = 0; round < 200; ++round) {
            QByteArray bytes(int(random.bounded(200)), Qt::Uninitialized);
            for (char &c : bytes)
                c = alphabet[random.bounded(int(sizeof alphabet - 1))];
            MGVCardReader::readPeople(bytes);
        }
    }
};

QTEST_MAIN(TestVCardReader)
#include "tst_vcardreader.moc"
