#include "GRTestSupport.h"
#include "MGXmlEncoder.h"

#include <QTest>

#include <functional>

using EncoderScript = std::function<void(MGXmlEncoder &)>;
Q_DECLARE_METATYPE(EncoderScript)

class TestXmlEncoder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void layout_data();
    void layout();
    void escaping_data();
    void escaping();
};

void TestXmlEncoder::layout_data()
{
    QTest::addColumn<EncoderScript>("script");
    QTest::addColumn<QString>("body");

    QTest::newRow("fresh") << EncoderScript([](MGXmlEncoder &) {}) << QString();
    QTest::newRow("nested document")
        << EncoderScript([](MGXmlEncoder &e) {
               e.addAttribute("version", 1);
               e.openTag("groceries");
               e.openTag("stores");
               e.closeTag("stores");
               e.openTag("categories");
               e.openTag("category");
               e.addTag("name", QString("Dairy"));
               e.closeTag("category");
               e.closeTag("categories");
               e.addTag("columns", 3);
               e.openAndCloseTag("items");
               e.closeTag("groceries");
           })
        << "<groceries version=\"1\">\n\t<stores></stores>\n\t<categories>\n\t\t<category>\n"
           "\t\t\t<name>Dairy</name>\n\t\t</category>\n\t</categories>\n\t<columns>3</columns>\n"
           "\t<items/>\n</groceries>\n";
    QTest::newRow("empty string self-closes, null writes nothing") << EncoderScript([](MGXmlEncoder &e) {
        e.addTag("name", QString(""));
        e.addTag("name", QString());
    }) << "<name/>\n";
    QTest::newRow("attributes")
        << EncoderScript([](MGXmlEncoder &e) {
               e.addAttribute("n", -12);
               e.addAttribute("s", QString("a\"<b>&c"));
               e.addAttribute("skipped", QString(""));
               e.addTag("x", QString("v"));
               e.addTag("plain", std::numeric_limits<qint64>::min());
               e.addAttribute("k", 7);
               e.openAndCloseTag("e");
           })
        << "<x n=\"-12\" s=\"a&quot;&lt;b&gt;&amp;c\">v</x>\n<plain>-9223372036854775808</plain>\n<e "
           "k=\"7\"/>\n";
}

void TestXmlEncoder::layout()
{
    QFETCH(EncoderScript, script);
    QFETCH(QString, body);
    MGXmlEncoder encoder(64);
    script(encoder);
    QCOMPARE(encoder.xml(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + body);
    QCOMPARE(encoder.isEmpty(), body.isEmpty());
}

void TestXmlEncoder::escaping_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("escaped");
    QTest::newRow("apostrophe kept") << "Tom's <b>"
                                     << "Tom's &lt;b&gt;";
    QTest::newRow("ampersand first") << "&lt;\""
                                     << "&amp;lt;&quot;";
    QTest::newRow("tab LF CR kept") << "a\tb\nc\rd"
                                    << "a\tb\nc\rd";
    QTest::newRow("C0, DEL and C1 controls")
        << QString(QChar(1)) + "x" + QChar(0x1f) + QChar(0) + QChar(0x7f) + QChar(0x85) << " x    ";
    QTest::newRow("beyond ASCII untouched") << QString::fromUtf16(u"Cr\u00e8me \U0001F353 \u00a0")
                                            << QString::fromUtf16(u"Cr\u00e8me \U0001F353 \u00a0");
}

void TestXmlEncoder::escaping()
{
    QFETCH(QString, text);
    QFETCH(QString, escaped);
    QCOMPARE(MGXmlEncoder::createEscapedStringForHtml(text), escaped);
}

QTEST_GUILESS_MAIN(TestXmlEncoder)
#include "tst_xmlencoder.moc"
