#include "MGVCardReader.h"

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
};

QTEST_MAIN(TestVCardReader)
#include "tst_vcardreader.moc"
