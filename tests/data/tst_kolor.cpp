#include "GRTestSupport.h"
#include "Kolor.h"

#include <QTest>

class TestKolor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { GRTestSupport::initEnvironment(); }
    void drawable_data();
    void drawable();
    void fromString_data();
    void fromString();
    void toString_data();
    void toString();
    void lighten_data();
    void lighten();
    void fromColor_data();
    void fromColor();
    void colorRoundTrip();
};

#define HEX(word) QString::number(word, 16)

void TestKolor::drawable_data()
{
    QTest::addColumn<quint32>("word");
    QTest::addColumn<bool>("drawable");
    QTest::newRow("alpha 0") << 0x00FFFFFFu << false;
    QTest::newRow("alpha 1") << 0x01000000u << true;
    QTest::newRow("alpha 101") << 0x65000000u << false;
    QTest::newRow("alpha 128 is negative") << 0x80000001u << false;
    QTest::newRow("no colour") << 0xFFFFFFFFu << false;
}

void TestKolor::drawable()
{
    QFETCH(quint32, word);
    QFETCH(bool, drawable);
    QCOMPARE(Kolor::fromWord(word).isDrawable(), drawable);
    QCOMPARE(ColorFromKolor(Kolor::fromWord(word)).alpha() != 0, drawable);
}

void TestKolor::fromString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("word");
    QTest::newRow("empty") << QString() << 0xFFFFFFFFu;
    QTest::newRow("short") << "{1,2,3}" << 0xFFFFFFFFu;
    QTest::newRow("eight characters") << "{1, 2, 3" << 0xFFFFFFFFu;
    QTest::newRow("no spaces") << "{10,20,30}" << 0xFFFFFFFFu;
    QTest::newRow("garbage") << "not a colour at all" << 0xFFFFFFFFu;
    QTest::newRow("nine characters") << "{1, 2, 3}" << 0x64030201u;
    QTest::newRow("four parts") << "{10, 20, 30, 40}" << 0x281E140Au;
    QTest::newRow("more parts ignored") << "{1, 2, 3, 4, 5, 6}" << 0x04030201u;
    QTest::newRow("masked") << "{256, 511, 1000, 356}" << 0x64E8FF00u;
    QTest::newRow("negative") << "{-1, -2, 0}" << 0x6400FEFFu;
    QTest::newRow("huge") << "{99999999999999, 1, 2}" << 0x640201FFu;
    QTest::newRow("words") << "{red, green, blue}" << 0x64000000u;
    QTest::newRow("trailing junk") << "{12px, 7 , +5}" << 0x6405070Cu;
}

void TestKolor::fromString()
{
    QFETCH(QString, text);
    QFETCH(quint32, word);
    QCOMPARE(HEX(KolorFromString(text).word()), HEX(word));
}

void TestKolor::toString_data()
{
    QTest::addColumn<quint32>("word");
    QTest::addColumn<QString>("text");
    QTest::newRow("opaque") << 0x641E140Au << "{10, 20, 30}";
    QTest::newRow("translucent") << 0x321E140Au << "{10, 20, 30, 50}";
    QTest::newRow("no colour") << 0xFFFFFFFFu << "{255, 255, 255, 255}";
}

void TestKolor::toString()
{
    QFETCH(quint32, word);
    QFETCH(QString, text);
    QCOMPARE(KolorToString(Kolor::fromWord(word)), text);
    QCOMPARE(HEX(KolorFromString(text).word()), HEX(word));
}

void TestKolor::lighten_data()
{
    QTest::addColumn<quint32>("word");
    QTest::addColumn<quint32>("lightened");
    QTest::newRow("white") << 0x64FFFFFFu << 0x64FFFFFFu;
    QTest::newRow("black") << 0x64000000u << 0x64404040u;
    QTest::newRow("at 191") << 0x32BFBFBFu << 0x32FFFFFFu;
    QTest::newRow("mixed, alpha kept") << 0x0AC0100Au << 0x0AFF504Au;
}

void TestKolor::lighten()
{
    QFETCH(quint32, word);
    QFETCH(quint32, lightened);
    QCOMPARE(HEX(LightenKolor(Kolor::fromWord(word)).word()), HEX(lightened));
}

void TestKolor::fromColor_data()
{
    QTest::addColumn<std::optional<QColor>>("color");
    QTest::addColumn<quint32>("word");
    using C = std::optional<QColor>;
    QTest::newRow("none") << C() << 0xFFFFFFFFu;
    QTest::newRow("8-bit") << C(QColor(10, 20, 30)) << 0x641E140Au;
    QTest::newRow("transparent") << C(QColor(10, 20, 30, 0)) << 0xFFFFFFFFu;
    // 128/255 is 50.2% and 3/255 is 1.2%: truncated, not rounded.
    QTest::newRow("half alpha") << C(QColor(255, 255, 255, 128)) << 0x32FFFFFFu;
    QTest::newRow("alpha below 1%") << C(QColor(1, 2, 3, 2)) << 0xFFFFFFFFu;
    QTest::newRow("alpha 1%") << C(QColor(1, 2, 3, 3)) << 0x01030201u;
    QTest::newRow("float half") << C(QColor::fromRgbF(0.5f, 0.5f, 0.5f)) << 0x647F7F7Fu;
    QTest::newRow("hsv") << C(QColor::fromHsv(0, 255, 255)) << 0x640000FFu;
    QTest::newRow("extended range") << C(QColor::fromRgbF(1.5f, -0.5f, 0.0f)) << 0x640000FFu;
}

void TestKolor::fromColor()
{
    QFETCH(std::optional<QColor>, color);
    QFETCH(quint32, word);
    QCOMPARE(HEX(KolorFromColor(color).word()), HEX(word));
}

void TestKolor::colorRoundTrip()
{
    // Every 8-bit channel survives exactly, and so does every alpha percentage.
    for (int v = 0; v < 256; ++v) {
        const Kolor kolor{quint8(v), quint8(255 - v), quint8(v / 3), quint8(v % 100 + 1)};
        QCOMPARE(HEX(KolorFromColor(QColor(v, 255 - v, v / 3)).word()),
                 HEX(0x64000000u | (kolor.word() & 0xFFFFFF)));
        const QColor color = ColorFromKolor(kolor);
        QVERIFY(qAbs(color.alphaF() - kolor.alphaPercent / 100.0) < 0.0001);
        QCOMPARE(HEX(KolorFromColor(color).word()), HEX(kolor.word()));
    }
}

QTEST_GUILESS_MAIN(TestKolor)
#include "tst_kolor.moc"
