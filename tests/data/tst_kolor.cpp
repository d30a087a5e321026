#include "Kolor.h"

#include <QTest>

#define HEX(word) QString::number(word, 16)

constexpr quint32 none = Kolor::NoColorWord;

class TestKolor : public QObject
{
    Q_OBJECT

private slots:
    void words()
    {
        // clang-format off
        struct Row { quint32 word; bool drawable; quint32 lightened; };
        const Row rows[] = {
            {0x00FFFFFFu, false, 0x00FFFFFFu}, {0x01000000u, true, 0x01404040u}, {0x32BFBFBFu, true, 0x32FFFFFFu},
            {0x0AC0100Au, true, 0x0AFF504Au}, {0x64FFFFFFu, true, 0x64FFFFFFu}, {0x65000000u, false, 0x65404040u},
            {0x80000001u, false, 0x80404041u}, {0xFFFFFFFFu, false, 0xFFFFFFFFu}};
        // clang-format on
        for (const Row &row : rows) {
            const Kolor kolor = Kolor::fromWord(row.word);
            QCOMPARE(std::pair(HEX(row.word), kolor.isDrawable()), std::pair(HEX(row.word), row.drawable));
            QCOMPARE(ColorFromKolor(kolor).alpha() != 0, row.drawable);
            QCOMPARE(HEX(LightenKolor(kolor).word()), HEX(row.lightened));
        }
    }

    void strings()
    {
        // clang-format off
        const std::pair<QString, quint32> rows[] = {
            {"", none}, {"{1,2,3}", none}, {"{1, 2, 3", none}, {"{10,20,30}", none}, {"not a colour", none},
            {"{1, 2, 3}", 0x64030201u}, {"{10, 20, 30, 40}", 0x281E140Au}, {"{1, 2, 3, 4, 5, 6}", 0x04030201u},
            {"{256, 511, 1000, 356}", 0x64E8FF00u}, {"{-1, -2, 0}", 0x6400FEFFu},
            {"{99999999999999, 1, 2}", 0x640201FFu}, {"{red, green, blue}", 0x64000000u},
            {"{12px, 7 , +5}", 0x6405070Cu}};
        // clang-format on
        for (const auto &[text, word] : rows)
            QCOMPARE(std::pair(text, HEX(KolorFromString(text).word())), std::pair(text, HEX(word)));
    }

    void colors()
    {
        // Alpha 128/255 is 50.2% and 3/255 is 1.2%: truncated, not rounded; extended-range channels clamp.
        // clang-format off
        const std::pair<std::optional<QColor>, quint32> rows[] = {
            {std::nullopt, none}, {QColor(10, 20, 30, 0), none}, {QColor(255, 255, 255, 128), 0x32FFFFFFu},
            {QColor(1, 2, 3, 2), none}, {QColor(1, 2, 3, 3), 0x01030201u},
            {QColor::fromRgbF(0.5f, 0.5f, 0.5f), 0x647F7F7Fu},
            {QColor::fromRgbF(1.5f, -0.5f, 0.0f), 0x640000FFu}};
        // clang-format on
        for (const auto &[color, word] : rows)
            QCOMPARE(HEX(KolorFromColor(color).word()), HEX(word));
    }
};

QTEST_GUILESS_MAIN(TestKolor)
#include "tst_kolor.moc"
