#include "GRTestSupport.h"
#include "MGXmlDecoder.h"
#include "MGXmlEncoder.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

// Reads every tag, each as "name@level" + "S" (start) + "E" (end) + "=value".
static QStringList readAll(MGXmlDecoder &d)
{
    QStringList tags;
    while (d.getNextTag())
        tags << d.xmlTag() + "@" + QString::number(d.level()) + (d.startTag() ? "S" : "") +
                    (d.endTag() ? "E" : "") + "=" + d.value();
    return tags;
}

static std::unique_ptr<MGXmlDecoder> decoderFor(const QString &body)
{
    return MGXmlDecoder::fromString("<?xml?>" + body);
}

class TestXmlDecoder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void tagSequence_data();
    void tagSequence();
    void keysAndAttributes();
    void prologue_data();
    void prologue();
    void fromData_data();
    void fromData();
    void fromFile();
    void decodeEscapes_data();
    void decodeEscapes();
    void roundTrip_data();
    void roundTrip();
    void integerValue_data();
    void integerValue();
    void errors_data();
    void errors();
    void hostileInputsTerminate_data();
    void hostileInputsTerminate();
};

void TestXmlDecoder::tagSequence_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QStringList>("tags");
    QTest::newRow("database shape")
        << "\n<groceries version=\"1\">\n\t<stores></stores>\n\t<categories>\n"
           "\t\t<category>\n\t\t\t<name>Milk</name>\n\t\t</category>\n\t</categories>\n"
           "\t<columns>3</columns>\n\t<items/>\n</groceries>\n"
        << QStringList{"groceries@1S=", "stores@1SE=",    "categories@2S=", "category@3S=", "name@3SE=Milk",
                       "category@2E=",  "categories@1E=", "columns@1SE=3",  "items@1SE=",   "groceries@0E="};
    QTest::newRow("comments") << "<!-- a --><a><!-- b --><b>x<!-- y -->z</b >\n</a>"
                              << QStringList{"a@1S=", "b@1SE=xz", "a@0E="};
    QTest::newRow("nested declaration")
        << "<!DOCTYPE x [<!ENTITY y \"<z>\">]><a>t</a>" << QStringList{"a@0SE=t"};
    QTest::newRow("instruction") << "<?style x ?><a/>" << QStringList{"?@0SE=style x", "a@0SE="};
    QTest::newRow("CDATA literal") << "<a>x&lt;<![CDATA[<b>&amp;]]>y</a>" << QStringList{"a@0SE=x<<b>&amp;y"};
    QTest::newRow("references between tags")
        << "<a>\n&nbsp;<b/>&#32;</a>" << QStringList{"a@1S=", "b@1SE=", "a@0E="};
    QTest::newRow("stray end tags") << "</a></b>" << QStringList{"a@-1E=", "b@-2E="};
}

void TestXmlDecoder::tagSequence()
{
    QFETCH(QString, body);
    QFETCH(QStringList, tags);
    auto decoder = decoderFor(body);
    QCOMPARE(readAll(*decoder), tags);
    QVERIFY(decoder->isDone());
    QCOMPARE(decoder->error(), QString());
}

void TestXmlDecoder::keysAndAttributes()
{
    const auto previous = MGXmlDecoder::keyDecoder();
    auto table = std::make_shared<MGXmlDecoder::KeyTable>();
    MGXmlDecoder::setKeyDecoder(table);
    MGXmlDecoder::addDecoderKey(15, "groceries");
    const QString body = "<?pi?><groceries a='1' b=\"x &amp; 'y'\" a=\"2\"><other/></groceries>";
    auto decoder = decoderFor(body);
    QVERIFY(decoder->getNextTag());
    QCOMPARE(decoder->key(), MGXmlDecoder::ProcessingInstructionKey);
    QVERIFY(decoder->getNextTag());
    QCOMPARE(decoder->key(), 15u);
    QCOMPARE(decoder->orderedAttributes().size(), qsizetype(3));
    QCOMPARE(decoder->attributes().value("a"), "1");
    QCOMPARE(decoder->stringAttributeForTag("b"), "x & 'y'");
    QCOMPARE(decoder->decodeAttribute("b", {"z", "x & 'y'"}), qint64(1));
    QVERIFY(decoder->stringAttributeForTag("c").isNull());
    QVERIFY(decoder->getNextTag());
    QCOMPARE(decoder->key(), 0u);
    QVERIFY(!decoder->tagHasAttributes());

    decoder = decoderFor(body);
    decoder->setOwnKeyTable(
        std::make_shared<MGXmlDecoder::KeyTable>(MGXmlDecoder::KeyTable{{"other", 1000}}));
    QList<quint32> keys;
    while (decoder->getNextTag())
        keys << decoder->key();
    QCOMPARE(keys, (QList<quint32>{MGXmlDecoder::ProcessingInstructionKey, 0, 1000, 0}));
    MGXmlDecoder::setKeyDecoder(previous);
    QCOMPARE(table->value("groceries"), 15u);
}

void TestXmlDecoder::prologue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    // clang-format off
    const std::pair<const char *, bool> rows[] = {
        {"", false}, {"<?xml?>", true}, {" <!-- a --><!DOCTYPE x>&amp;<?xml?><a/>", true}, {"<a/><?xml?>", false},
        {"<!-- <?xml?>", false}, {"<?xml version=\"1.0\"", false}, {"x<?xml?>", false}};
    // clang-format on
    for (const auto &[text, accepted] : rows)
        QTest::newRow(text) << QString(text) << accepted;
}

void TestXmlDecoder::prologue()
{
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    QCOMPARE(bool(MGXmlDecoder::fromString(text)), accepted);
}

void TestXmlDecoder::fromData_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("value"); // null when refused
    QTest::newRow("UTF-8") << QByteArray("<?xml?><a>Cr\xc3\xa8me</a>") << QString::fromUtf8("Cr\xc3\xa8me");
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf<?xml?><a>x</a>") << "x";
    QTest::newRow("lone continuation") << QByteArray("<?xml?><a>\x80</a>") << QString();
    QTest::newRow("truncated at the end") << QByteArray("<?xml?><a>\xc3") << QString();
    QTest::newRow("overlong") << QByteArray("<?xml?><a>\xc0\xaf</a>") << QString();
    QTest::newRow("encoded surrogate") << QByteArray("<?xml?><a>\xed\xa0\x80</a>") << QString();
}

void TestXmlDecoder::fromData()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, value);
    auto decoder = MGXmlDecoder::fromData(data);
    QCOMPARE(bool(decoder), !value.isNull());
    QVERIFY(!decoder || (decoder->getNextTag() && decoder->value() == value));
}

void TestXmlDecoder::fromFile()
{
    QTemporaryDir dir;
    QFile bad(dir.filePath("bad.xml"));
    QVERIFY(bad.open(QIODevice::WriteOnly) && bad.write("caf\xe9") == 4);
    bad.close();
    QString error;
    QVERIFY(!MGXmlDecoder::fromFile(dir.filePath("missing.xml"), &error));
    QVERIFY(!error.isEmpty() && error != "I don't understand the file format");
    QVERIFY(!MGXmlDecoder::fromFile(bad.fileName(), &error));
    QCOMPARE(error, "I don't understand the file format");
}

void TestXmlDecoder::decodeEscapes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("decoded");
    const std::pair<const char *, const char *> rows[] = {
        {"Fish &copy; Chips", "Fish  Chips"}, // unknown entities are deleted
        {"&nbsp;&lt;&gt;&amp;&quot;&apos;", " <>&\"'"},
        {"&amp;lt; &#38;amp;", "&lt; &amp;"}, // decoded once
        {"&#65;&#x42;&#X43;&#68 E&#x1F353;", "ABCDE\U0001F353"},
        {"&#xD800;&#0;&#99999999999999999999;", "\uFFFD\uFFFD\uFFFD"},
        {"a & b && AT&T& &#65", "a & b && AT&T& &#65"},
        {"x&<y;&a>b;", "x&<y;&a>b;"},
        {"[&abcdefghijkl;][&abcdefghijklm;]", "[][&abcdefghijklm;]"}, // at most 14 characters
    };
    for (const auto &[text, decoded] : rows)
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(decoded);
}

void TestXmlDecoder::decodeEscapes()
{
    QFETCH(QString, text);
    QFETCH(QString, decoded);
    QCOMPARE(MGXmlDecoder::decodeEscapes(text), decoded);
}

void TestXmlDecoder::roundTrip_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"Tom's <b>", "&amp; &nbsp; &#65;", "\"x\" ]]>", "  a\tb\r\nc  "})
        QTest::newRow(text) << QString(text);
}

void TestXmlDecoder::roundTrip()
{
    QFETCH(QString, text);
    MGXmlEncoder encoder;
    encoder.addAttribute("a", text);
    encoder.openTag("item");
    encoder.addTag("name", text);
    encoder.closeTag("item");
    auto decoder = MGXmlDecoder::fromString(encoder.xml());
    QVERIFY(decoder && decoder->getNextTag());
    QCOMPARE(decoder->stringAttributeForTag("a"), text);
    QVERIFY(decoder->getNextTag());
    QCOMPARE(decoder->value(), text);
}

void TestXmlDecoder::integerValue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("number");
    constexpr qint64 max = std::numeric_limits<qint64>::max(), min = std::numeric_limits<qint64>::min();
    // clang-format off
    const std::pair<const char *, qint64> rows[] = {
        {" \t\n-17kg", -17}, {"+5", 5}, {"abc", 0}, {"", 0}, {"- 5", 0}, {"0x1F", 0},
        {"9223372036854775807", max}, {"9223372036854775808", max}, {"-9223372036854775808", min},
        {"-99999999999999999999999", min}};
    // clang-format on
    for (const auto &[text, number] : rows)
        QTest::newRow(text) << QString(text) << number;
}

void TestXmlDecoder::integerValue()
{
    QFETCH(QString, text);
    QFETCH(qint64, number);
    auto decoder = decoderFor("<a n=\"" + text + "\">" + text + "</a>");
    QVERIFY(decoder->getNextTag());
    QCOMPARE(decoder->integerValue(), number);
    QCOMPARE(decoder->integerAttributeForTag("n"), number);
}

void TestXmlDecoder::errors_data()
{
    QTest::addColumn<QString>("body"); // after "<?xml?>", 7 characters
    QTest::addColumn<int>("flags");    // 1 numeric tags, 2 space in attributes
    QTest::addColumn<int>("tagsRead");
    QTest::addColumn<QString>("error");
    struct Row
    {
        const char *body;
        int flags, tagsRead, offset;
    };
    // clang-format off
    const Row rows[] = {
        {" <a><b/>oops</a>", 0, 2, 0xf}, {"<a><!-- never", 0, 1, 0xa}, {"<1a/>", 0, 0, 7}, {"<1a/>", 1, 1, -1},
        {"<a b = \"1\"/>", 0, 0, 7}, {"<a b = \"1\"/>", 2, 1, -1}, {"<a b=1/>", 0, 0, 7}, {"<a b='1/>", 0, 0, 7},
        {"<a>x</ a>", 0, 0, 0xb}, {"<a/><", 0, 1, 0xb}, {"<a/><!-->", 0, 1, 0xb}, {"<a/><!DOCTYPE <x>", 0, 1, 0xb},
        {"<a/>&", 0, 1, 0xb}, {"<a/><?pi", 0, 1, 0xb}};
    // clang-format on
    for (const Row &row : rows) {
        const QString error = QString("this is not a valid XML file (offset 0x%1)").arg(row.offset, 0, 16);
        QTest::addRow("%s %d", row.body, row.flags)
            << row.body << row.flags << row.tagsRead << (row.offset < 0 ? QString() : error);
    }
    QTest::newRow("unclosed CDATA") << "<a><![CDATA[x</a>" << 0 << 0 << "malformed CDATA at offset 0xa";
}

void TestXmlDecoder::errors()
{
    QFETCH(QString, body);
    QFETCH(int, flags);
    QFETCH(int, tagsRead);
    QFETCH(QString, error);
    auto decoder = decoderFor(body);
    decoder->setAllowNumericTags(flags & 1);
    decoder->setAllowSpaceInAttr(flags & 2);
    QCOMPARE(readAll(*decoder).size(), tagsRead);
    QCOMPARE(decoder->error(), error);
    QVERIFY(decoder->isDone());
    decoder->setError("later");
    QCOMPARE(decoder->error(), error.isEmpty() ? "later" : error);
}

void TestXmlDecoder::hostileInputsTerminate_data()
{
    QTest::addColumn<QString>("text");
    const int n = 200000;
    QTest::newRow("deep nesting") << "<?xml?>" + QString("<a>").repeated(n);
    QTest::newRow("ampersands in text") << "<?xml?><a>" + QString("&").repeated(n) + ";</a>";
    QTest::newRow("ampersands between tags") << "<?xml?><a>" + QString("&a<b/>").repeated(n);
    QTest::newRow("open comments") << "<?xml?><a>" + QString("<!--").repeated(n);
    QTest::newRow("nested declaration") << "<?xml?>" + QString("<!DOCTYPE ").repeated(n);
    QTest::newRow("attributes, no end") << "<?xml?><a" + QString(" b='&#x10FFFF;'").repeated(n / 10);
    QString random = "<?xml?>";
    QRandomGenerator generator(42);
    for (int i = 0; i < n; ++i)
        random += QChar(char16_t(generator.bounded(0x80) | (generator.bounded(8) == 0 ? 0xD800 : 0)));
    QTest::newRow("random with lone surrogates") << random;
    const QString document = "<!--c--><?xml version=\"1.0\"?><!DOCTYPE g [<!E x>]><?pi?><g v='1'><s></s><c>"
                             "<n>a&amp;b&#65;<![CDATA[<]]><!--x--></n></c><i/></g>";
    for (qsizetype length = 0; length < document.size(); ++length)
        QTest::addRow("truncated at %d", int(length)) << document.left(length);
}

void TestXmlDecoder::hostileInputsTerminate()
{
    QFETCH(QString, text);
    QElapsedTimer timer;
    timer.start();
    MGXmlDecoder decoder(text);
    qsizetype tags = 0;
    while (decoder.getNextTag()) {
        (void)decoder.integerValue();
        QVERIFY(++tags <= text.size());
    }
    QVERIFY(decoder.isDone());
    QVERIFY(timer.elapsed() < 10000);
}

QTEST_GUILESS_MAIN(TestXmlDecoder)
#include "tst_xmldecoder.moc"
