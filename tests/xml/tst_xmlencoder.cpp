#include "MGXmlEncoder.h"

#include <QTest>

class TestXmlEncoder : public QObject
{
    Q_OBJECT

private slots:
    void document()
    {
        const QString declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        MGXmlEncoder e(64);
        e.addTag("name", QString()); // a null string writes nothing
        QCOMPARE(e.xml(), declaration);
        QVERIFY(e.isEmpty());

        e.addAttribute("version", 1);
        e.addAttribute("s", QString("a\"<b>&c"));
        e.addAttribute("skipped", QString(""));
        e.openTag("groceries");
        e.openTag("stores");
        e.closeTag("stores");
        e.openTag("categories");
        e.addTag("name", QString(""));
        e.addTag("plain", std::numeric_limits<qint64>::min());
        e.addAttribute("n", -12);
        e.addTag("name", QString("Milk"));
        e.closeTag("categories");
        e.addAttribute("k", 7);
        e.openAndCloseTag("items");
        e.closeTag("groceries");
        QVERIFY(!e.isEmpty());
        // clang-format off
        QCOMPARE(e.xml(), declaration + "<groceries version=\"1\" s=\"a&quot;&lt;b&gt;&amp;c\">\n"
            "\t<stores></stores>\n\t<categories>\n\t\t<name/>\n\t\t<plain>-9223372036854775808</plain>\n"
            "\t\t<name n=\"-12\">Milk</name>\n\t</categories>\n\t<items k=\"7\"/>\n</groceries>\n");
        // clang-format on
    }

    void escaping()
    {
        const QString controls = QString(QChar(1)) + "x" + QChar(0x1f) + QChar(0) + QChar(0x7f) + QChar(0x85);
        const QString beyondAscii = QString::fromUtf16(u"Cr\u00e8me \U0001F353 \u00a0");
        // clang-format off
        const std::pair<QString, QString> rows[] = {
            {"Tom's <b>", "Tom's &lt;b&gt;"}, {"&lt;\"", "&amp;lt;&quot;"}, {"a\tb\nc\rd", "a\tb\nc\rd"},
            {controls, " x    "}, {beyondAscii, beyondAscii}};
        // clang-format on
        for (const auto &[text, escaped] : rows)
            QCOMPARE(MGXmlEncoder::createEscapedStringForHtml(text), escaped);
    }
};

QTEST_GUILESS_MAIN(TestXmlEncoder)
#include "tst_xmlencoder.moc"
