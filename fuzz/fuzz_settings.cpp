// Puts arbitrary values under every settings key the preferences read, then reads them. What is
// read lies in its valid range, and saving it reads back the same, within this process and from
// the file on disk.
//
// The first byte picks the form of the rest: odd, the text of the settings file itself; even,
// values separated by 0x1E, one per key in the order of keys(), each typed by its first byte.
#include "GRKeyNames.h"
#include "GRPrefController.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

void check(bool condition)
{
    if (!condition)
        std::abort();
}

const QStringList &keys()
{
    static const QStringList list = [] {
        QStringList result;
        for (const char *key :
             {GRPrefDisplayFontKey, GRPrefPrintFontKey, GRPrefPrintInfoKey, GRPrefPrintScopeKey,
              GRPrefIgnorePageStartsKey, GRPrefShowKeysKey, GRPrefConfirmDeleteKey, GRPrefEmailTargetKey,
              GRPrefKeyNamesKey, GRPrefPrintHeaderAndFooterKey})
            result.append(QLatin1String(key));
        return result;
    }();
    return list;
}

QSettings settings()
{
    return QSettings(QStringLiteral("Marlowick"), QStringLiteral("Groceries"));
}

// The file is rewritten many times a second; a new modification time makes every QSettings read
// it again instead of trusting the copy it has.
void touchSettingsFile()
{
    static qint64 counter = 0;
    QFile file(settings().fileName());
    if (file.open(QIODevice::ReadWrite))
        file.setFileTime(QDateTime::fromSecsSinceEpoch(946684800 + ++counter),
                         QFileDevice::FileModificationTime);
}

template <typename T> T number(const QByteArray &bytes)
{
    T value{};
    std::memcpy(&value, bytes.constData(), std::min(sizeof value, size_t(bytes.size())));
    return value;
}

// The first byte picks the type, the rest is the value; an invalid variant leaves the key out.
QVariant valueFrom(const QByteArray &chunk)
{
    const QByteArray body = chunk.mid(1);
    const QList<QByteArray> parts = body.split('\x1f');
    switch (chunk.isEmpty() ? 0 : quint8(chunk[0]) % 10) {
    case 1:
        return QString::fromUtf8(body);
    case 2:
        return number<qint32>(body);
    case 3:
        return number<qint64>(body);
    case 4:
        return number<quint64>(body);
    case 5:
        return !body.isEmpty() && (body[0] & 1);
    case 6:
        return number<double>(body);
    case 7: {
        QStringList strings;
        for (const QByteArray &part : parts)
            strings.append(QString::fromUtf8(part));
        return strings;
    }
    case 8: {
        QVariantList list;
        for (const QByteArray &part : parts) {
            bool isNumber = false;
            const int n = part.toInt(&isNumber);
            list.append(isNumber ? QVariant(n) : QVariant(QString::fromUtf8(part)));
        }
        return list;
    }
    case 9:
        return body;
    default:
        return {};
    }
}

struct Values
{
    QString displayFont;
    QString printFont;
    QString printInfo;
    qint32 printScope = 0;
    bool ignorePageStarts = false;
    bool showKeys = false;
    bool confirmDelete = false;
    QString emailTarget;
    QStringList keyNames;
    friend bool operator==(const Values &, const Values &) = default;
};

Values read()
{
    GRPrefController prefs;
    const double points[] = {prefs.displayFont().pointSizeF(), prefs.printFont().pointSizeF()};
    for (const double size : points)
        check(size > 0.0 && size <= 1000.0);
    check(prefs.printScope() >= 0 && prefs.printScope() <= 2);
    GRPrintSettings &page = prefs.printInfo();
    check(page.scale() >= GRPrintSettings::MinScale && page.scale() <= GRPrintSettings::MaxScale);
    check(page.pageLayout().isValid() && GRPrintSettings::fromString(page.toString()) == page);
    check(g_customKeyNames.isEmpty() || g_customKeyNames.size() == g_defaultKeyNames.size());
    BuildKeyStrings();
    check(g_keyStrings.size() == g_defaultKeyNames.size());
    return Values{prefs.displayFont().toString(),
                  prefs.printFont().toString(),
                  page.toString(),
                  prefs.printScope(),
                  prefs.ignorePageStarts(),
                  prefs.showKeys(),
                  prefs.confirmDelete(),
                  prefs.emailTarget(),
                  g_customKeyNames};
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Never the user's settings: a private folder for both scopes, made before any QSettings.
    QStandardPaths::setTestModeEnabled(true);
    // Every settings sync ends in an fsync: in memory, when the system has such a folder, the
    // runs go a hundred times faster.
    const QDir shm(QStringLiteral("/dev/shm"));
    static QTemporaryDir folder(shm.exists()
                                    ? shm.filePath(QStringLiteral("gr-fuzz-settings-XXXXXX"))
                                    : QDir::temp().filePath(QStringLiteral("gr-fuzz-settings-XXXXXX")));
    check(folder.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       folder.filePath(QStringLiteral("user")));
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope,
                       folder.filePath(QStringLiteral("system")));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(*argc, *argv);
    qInstallMessageHandler(quiet);
    QDir().mkpath(QFileInfo(settings().fileName()).path());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray body(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    if (data[0] & 1) {
        // Qt 6.4 reads an "@Variant(...)" value with QDataStream, which trusts the lengths inside
        // and tries to allocate gigabytes for a damaged one. That reader is Qt's: with no '@' and
        // no escape that could make one, the text stays in plain INI; the typed form below stands
        // in for values of other types.
        QByteArray text = body;
        text.removeIf([](char c) { return c == '@' || c == '\\'; });
        QFile file(settings().fileName());
        check(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text) == text.size());
        file.close();
        touchSettingsFile();
    } else {
        QSettings stored = settings();
        stored.clear();
        const QList<QByteArray> chunks = body.split('\x1e');
        for (qsizetype i = 0; i < keys().size() && i < chunks.size(); ++i) {
            if (const QVariant value = valueFrom(chunks[i]); value.isValid())
                stored.setValue(keys()[i], value);
        }
        stored.sync();
    }

    const Values first = read();
    GRPrefController().savePreferences();
    check(read() == first);
    touchSettingsFile();
    const Values fromDisk = read();
    if (data[0] & 1) {
        // Qt's writer can bring back what its reader hid in damaged text (keys under a section
        // header broken across lines come back under [General]); from then on it must be stable.
        GRPrefController().savePreferences();
        touchSettingsFile();
        check(read() == fromDisk);
    } else {
        check(fromDisk == first);
    }
    return 0;
}
