#include "MGXmlDecoder.h"

#include <QElapsedTimer>
#include <QTest>

class TestXmlDecoder : public QObject
{
    Q_OBJECT

private slots:
    void parse()
    {
        // tags: each as "name@level" + "S" (start) + "E" (end) + "=value", with "_" for a space in the value.
        // flags: 1 numeric tags, 2 space in attributes.
        // error: a hex offset in an invalid file, or a whole message. Text keeps its white space.
        // clang-format off
        struct Row { const char *body; int flags; const char *tags, *error; };
        const Row rows[] = {
            {"\n<groceries version=\"1\">\n\t<stores></stores>\n\t<categories>\n\t\t<category>\n"
             "\t\t\t<name>Milk</name>\n\t\t</category>\n\t</categories>\n\t<columns>3</columns>\n\t<items/>\n"
             "</groceries>\n", 0, "groceries@1S= stores@1SE= categories@2S= category@3S= name@3SE=Milk "
             "category@2E= categories@1E= columns@1SE=3 items@1SE= groceries@0E=", ""},
            {"<!-- a --><a><!-- b --><b>x<!-- y -->z</b >\n</a>", 0, "a@1S= b@1SE=xz a@0E=", ""},
            {"<!DOCTYPE x [<!ENTITY y \"<z>\">]><a>t</a>", 0, "a@0SE=t", ""},
            {"<?style x ?><a/>", 0, "?@0SE=style_x a@0SE=", ""},
            {"<a> x\t</a><b>\r\n</b>", 0, "a@0SE=_x\t b@0SE=\r\n", ""},
            {"<a>x&lt;<![CDATA[<b>&amp;]]>y</a>", 0, "a@0SE=x<<b>&amp;y", ""},
            {"<a>\n&nbsp;<b/>&#32;</a>", 0, "a@1S= b@1SE= a@0E=", ""}, {"</a></b>", 0, "a@-1E= b@-2E=", ""},
            {"<1a/>", 1, "1a@0SE=", ""}, {"<a b = \"1\"/>", 2, "a@0SE=", ""}, {"<1a/>", 0, "", "7"},
            {"<a b = \"1\"/>", 0, "", "7"}, {"<a b=1/>", 0, "", "7"}, {"<a b='1/>", 0, "", "7"},
            {" <a><b/>oops</a>", 0, "a@1S= b@1SE=", "f"}, {"<a><!-- never", 0, "a@1S=", "a"},
            {"<a>x</ a>", 0, "", "b"}, {"<a/><", 0, "a@0SE=", "b"}, {"<a/><!-->", 0, "a@0SE=", "b"},
            {"<a/><!DOCTYPE <x>", 0, "a@0SE=", "b"}, {"<a/>&", 0, "a@0SE=", "b"}, {"<a/><?pi", 0, "a@0SE=", "b"},
            {"<a><![CDATA[x</a>", 0, "", "malformed CDATA at offset 0xa"}};
        // clang-format on
        for (const Row &row : rows) {
            const QString body = row.body;
            auto decoder = MGXmlDecoder::fromString("<?xml?>" + body);
            decoder->setAllowNumericTags(row.flags & 1);
            decoder->setAllowSpaceInAttr(row.flags & 2);
            QStringList tags;
            while (decoder->getNextTag())
                tags << decoder->xmlTag() + "@" + QString::number(decoder->level()) +
                            (decoder->startTag() ? "S" : "") + (decoder->endTag() ? "E" : "") + "=" +
                            QString(decoder->value()).replace(' ', '_');
            QString error = row.error;
            if (error.size() == 1) // a hex offset
                error = "this is not a valid XML file (offset 0x" + error + ")";
            QCOMPARE(std::pair(body, tags.join(' ')), std::pair(body, QString(row.tags)));
            QCOMPARE(decoder->error(), error);
            QVERIFY(decoder->isDone());
            decoder->setError("later"); // the first error stays
            QCOMPARE(decoder->error(), error.isEmpty() ? "later" : error);
        }
    }

    void opening()
    {
        const char *refused = nullptr;
        // clang-format off
        const std::pair<QByteArray, const char *> rows[] = { // data, then the first tag's value
            {"", refused}, {"<?xml?>", ""}, {" <!-- a --><!DOCTYPE x>&amp;<?xml?><a/>", ""},
            {"<a/><?xml?>", refused}, {"<!-- <?xml?>", refused}, {"<?xml version=\"1.0\"", refused},
            {"x<?xml?>", refused}, {"<?xml?><a>Cr\xc3\xa8me</a>", "Cr\xc3\xa8me"}, {"<?xml?><a>\xc3", refused},
            {"\xef\xbb\xbf<?xml?><a>x</a>", "x"}};
        // clang-format on
        for (const auto &[data, value] : rows) {
            auto decoder = MGXmlDecoder::fromData(data);
            QVERIFY2(bool(decoder) == bool(value), data.constData());
            if (decoder && decoder->getNextTag())
                QCOMPARE(decoder->value(), QString::fromUtf8(value));
        }
    }

    void decodeEscapes()
    {
        // Numeric references are decoded first and named ones in a second pass over the result; unknown
        // entities are deleted, and a named one is at most 14 characters long, "&" and ";" included.
        // clang-format off
        const std::pair<const char *, const char *> rows[] = {
            {"Fish &copy; Chips", "Fish  Chips"}, {"&nbsp;&lt;&gt;&amp;&quot;&apos;", " <>&\"'"},
            {"&amp;lt; &#38;amp; &#38;lt; &#38;#65;", "&lt; & < "}, {"&#65;&#x42;&#X43;&#68 E&#x1F353;", "ABCDE\U0001F353"},
            {"&#xD800;&#0;&#99999999999999999999;", "\uFFFD\uFFFD\uFFFD"},
            {"a & b && AT&T& &#65", "a & b && AT&T& &#65"}, {"x&<y;&a>b;", "x&<y;&a>b;"},
            {"[&abcdefghijkl;][&abcdefghijklm;]", "[][&abcdefghijklm;]"}};
        // clang-format on
        for (const auto &[text, decoded] : rows)
            QCOMPARE(MGXmlDecoder::decodeEscapes(QString::fromUtf8(text)), QString::fromUtf8(decoded));
    }

    // Numbers as strtoll reads them, clamped. Attributes in either quotes, entities decoded; of two with
    // one name the first counts.
    void integerValue()
    {
        constexpr qint64 max = std::numeric_limits<qint64>::max(), min = std::numeric_limits<qint64>::min();
        // clang-format off
        const std::pair<QString, qint64> rows[] = {
            {" \t\n-17kg", -17}, {"+5", 5}, {"abc", 0}, {"", 0}, {"- 5", 0}, {"0x1F", 0},
            {"9223372036854775807", max}, {"9223372036854775808", max}, {"-9223372036854775808", min},
            {"-99999999999999999999999", min}};
        // clang-format on
        for (const auto &[text, number] : rows) {
            auto decoder =
                MGXmlDecoder::fromString("<?xml?><a n='" + text + "' b=\"&amp;'\" n=\"2\">" + text + "</a>");
            QVERIFY(decoder->getNextTag());
            QCOMPARE(decoder->integerValue(), number);
            QCOMPARE(decoder->integerAttributeForTag("n"), number);
            QCOMPARE(decoder->stringAttributeForTag("b"), "&'");
            QVERIFY(decoder->stringAttributeForTag("c").isNull());
        }
    }

    void hostileInputsTerminate_data()
    {
        QTest::addColumn<QString>("text");
        const int n = 200000;
        QTest::newRow("deep nesting") << "<?xml?>" + QString("<a>").repeated(n);
        QTest::newRow("ampersands in text") << "<?xml?><a>" + QString("&").repeated(n) + ";</a>";
        QTest::newRow("ampersands between tags") << "<?xml?><a>" + QString("&a<b/>").repeated(n);
        QTest::newRow("open comments") << "<?xml?><a>" + QString("<!--").repeated(n);
        QTest::newRow("nested declaration") << "<?xml?>" + QString("<!DOCTYPE ").repeated(n);
        QTest::newRow("attributes, no end") << "<?xml?><a" + QString(" b='&#x10FFFF;'").repeated(n / 10);
    }

    void hostileInputsTerminate()
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
};

QTEST_GUILESS_MAIN(TestXmlDecoder)
#include "tst_xmldecoder.moc"
