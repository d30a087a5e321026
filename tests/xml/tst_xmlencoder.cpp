#include "MGXmlEncoder.h"

#include <QTest>

// Layout and escaping are checked through whole documents by the database file tests.
class TestXmlEncoder : public QObject
{
    Q_OBJECT

private slots:
    void document()
    {
        MGXmlEncoder e(64);
        e.addTag("name", QString()); // a null string writes nothing
        QVERIFY(e.isEmpty());

        e.addAttribute("s", QString("a\"<b>&c"));
        e.addAttribute("skipped", QString(""));
        e.openTag("groceries");
        e.addTag("plain", std::numeric_limits<qint64>::min());
        e.addAttribute("n", -12);
        e.addTag("name", QString("Milk\t") + QChar(1) + QChar(0x7f) + QChar(0x85)); // controls become spaces
        e.addAttribute("k", 7);
        e.openAndCloseTag("items");
        e.closeTag("groceries");
        QVERIFY(!e.isEmpty());
        // clang-format off
        QCOMPARE(e.xml(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<groceries s=\"a&quot;&lt;b&gt;&amp;c\">\n"
            "\t<plain>-9223372036854775808</plain>\n\t<name n=\"-12\">Milk\t   </name>\n\t<items k=\"7\"/>\n</groceries>\n");
        // clang-format on
    }
};

QTEST_GUILESS_MAIN(TestXmlEncoder)
#include "tst_xmlencoder.moc"
