#include "GRPrefController.h"

#include "GRGroceryDatabase.h"
#include "GRKeyNames.h"
#include "MGLog.h"

#include <QFile>
#include <QFontDatabase>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

#include <limits>
#include <optional>

namespace {

constexpr double MaxFontPoints = 1000.0;
constexpr qint32 MaxPrintScope = 2;

const QString SettingsOrganization = QStringLiteral("Marlowick");
const QString SettingsApplication = QStringLiteral("Groceries");

QString describe(const QVariant &value)
{
    const char *name = value.typeName();
    return name ? QString::fromLatin1(name) : QStringLiteral("unknown type");
}

void logUnreadable(const char *key, const QVariant &value)
{
    MGLog(QStringLiteral("Unreadable preference %1 (%2): using the default")
              .arg(QLatin1String(key), describe(value)));
}

bool isIntegerType(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

// Settings files keep no types, so integers and booleans may come back as text.
std::optional<qint64> readInteger(const QVariant &value)
{
    bool ok = false;
    qint64 number = 0;
    if (value.typeId() == QMetaType::ULongLong) {
        const quint64 unsignedNumber = value.toULongLong();
        ok = unsignedNumber <= quint64(std::numeric_limits<qint64>::max());
        number = qint64(unsignedNumber);
    } else if (isIntegerType(value)) {
        number = value.toLongLong(&ok);
    } else if (value.typeId() == QMetaType::QString) {
        number = value.toString().trimmed().toLongLong(&ok);
    }
    if (!ok)
        return std::nullopt;
    return number;
}

std::optional<bool> readBool(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 || text == QLatin1String("1"))
            return true;
        if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0 || text == QLatin1String("0"))
            return false;
        return std::nullopt;
    }
    if (const auto number = readInteger(value); number && (*number == 0 || *number == 1))
        return *number == 1;
    return std::nullopt;
}

bool loadBool(QSettings &settings, const char *key, bool fallback)
{
    const QVariant value = settings.value(QLatin1String(key));
    if (!value.isValid())
        return fallback;
    if (const auto flag = readBool(value))
        return *flag;
    logUnreadable(key, value);
    return fallback;
}

std::optional<QStringList> readStringList(const QVariant &value)
{
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    QStringList strings;
    for (const QVariant &entry : value.toList()) {
        if (entry.typeId() != QMetaType::QString)
            return std::nullopt;
        strings.append(entry.toString());
    }
    return strings;
}

// Checks what QFont::fromString() would accept silently or with a warning of its own: the
// descriptions written by QFont::toString() have 10 to 17 fields and a point size.
QString fontDescriptionProblem(const QString &description)
{
    const QStringList fields = description.split(QLatin1Char(','));
    if (fields.size() < 10 || fields.size() > 17)
        return QStringLiteral("not a font description");
    if (fields.first().trimmed().isEmpty())
        return QStringLiteral("no font family");
    bool ok = false;
    const double points = fields.at(1).toDouble(&ok);
    if (!ok || !(points > 0.0 && points <= MaxFontPoints))
        return QStringLiteral("bad point size %1").arg(fields.at(1));
    return QString();
}

} // namespace

QFont DefaultUserFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(12.0);
    return font;
}

QFont LoadFontFromPrefs(const QString &key)
{
    const QVariant value = QSettings(SettingsOrganization, SettingsApplication).value(key);
    if (!value.isValid())
        return DefaultUserFont();
    QString problem;
    if (value.typeId() != QMetaType::QString) {
        problem = QStringLiteral("stored as %1").arg(describe(value));
    } else {
        const QString description = value.toString();
        problem = fontDescriptionProblem(description);
        QFont font;
        if (problem.isEmpty() && !font.fromString(description))
            problem = QStringLiteral("not a font description");
        if (problem.isEmpty() && font.family().isEmpty())
            problem = QStringLiteral("no font family");
        if (problem.isEmpty() && !(font.pointSizeF() > 0.0 && font.pointSizeF() <= MaxFontPoints))
            problem = QStringLiteral("bad point size");
        if (problem.isEmpty())
            return font;
    }
    MGLog(QStringLiteral("LoadFontFromPrefs failed for %1: %2").arg(key, problem));
    return DefaultUserFont();
}

static bool s_readOnly = false;

// Qt reads the whole settings file when the first settings object is made, and decodes a value
// written as "@Variant(" or "@DateTime(" from binary, where a damaged length makes it try to
// allocate gigabytes. This program never writes such values, so a file holding one was damaged
// or made by something else: it is moved aside, or when nothing may be written, not read at all.
static void setAsideUnsafeSettingsFile()
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
                         SettingsOrganization + u'/' + SettingsApplication + QLatin1String(".conf");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray text = file.readAll();
    file.close();
    if (!text.contains("@Variant(") && !text.contains("@DateTime("))
        return;
    const QString aside = path + QLatin1String(" (damaged)");
    if (!s_readOnly && (!QFile::exists(aside) || QFile::remove(aside)) && QFile::rename(path, aside)) {
        MGLog(QStringLiteral("Settings file %1 holds values this program can't read safely; moved to %2")
                  .arg(path, aside));
        return;
    }
    MGLog(QStringLiteral("Settings file %1 holds values this program can't read safely; using the defaults")
              .arg(path));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       path + QLatin1String(" (not read)")); // a folder that is never made
}

void GRPrefController::setReadOnly(bool readOnly)
{
    s_readOnly = readOnly;
}

GRPrefController &GRPrefController::sharedInstance()
{
    static GRPrefController *const instance = new GRPrefController;
    return *instance;
}

GRPrefController::GRPrefController(QObject *parent) : QObject(parent)
{
    setAsideUnsafeSettingsFile();
    m_displayFont = LoadFontFromPrefs(QLatin1String(GRPrefDisplayFontKey));
    m_printFont = LoadFontFromPrefs(QLatin1String(GRPrefPrintFontKey));

    QSettings settings(SettingsOrganization, SettingsApplication);

    const QVariant printValue = settings.value(QLatin1String(GRPrefPrintInfoKey));
    if (printValue.isValid()) {
        QString problem = QStringLiteral("stored as %1").arg(describe(printValue));
        std::optional<GRPrintSettings> printInfo;
        if (printValue.typeId() == QMetaType::QString)
            printInfo = GRPrintSettings::fromString(printValue.toString(), &problem);
        if (printInfo)
            m_printInfo = *printInfo;
        else
            MGLog(QStringLiteral("Unreadable preference %1 (%2): using the default")
                      .arg(QLatin1String(GRPrefPrintInfoKey), problem));
    }

    const QVariant scopeValue = settings.value(QLatin1String(GRPrefPrintScopeKey));
    if (scopeValue.isValid()) {
        const auto scope = readInteger(scopeValue);
        if (scope && *scope >= 0 && *scope <= MaxPrintScope)
            m_printScope = qint32(*scope);
        else
            logUnreadable(GRPrefPrintScopeKey, scopeValue);
    }

    m_ignorePageStarts = loadBool(settings, GRPrefIgnorePageStartsKey, false);
    m_showKeys = loadBool(settings, GRPrefShowKeysKey, true);
    m_confirmDelete = loadBool(settings, GRPrefConfirmDeleteKey, true);

    const QVariant emailValue = settings.value(QLatin1String(GRPrefEmailTargetKey));
    if (emailValue.typeId() == QMetaType::QString)
        m_emailTarget = emailValue.toString();
    else if (emailValue.isValid())
        logUnreadable(GRPrefEmailTargetKey, emailValue);

    g_customKeyNames.clear();
    const QVariant keysValue = settings.value(QLatin1String(GRPrefKeyNamesKey));
    if (keysValue.isValid()) {
        const auto names = readStringList(keysValue);
        if (names && names->size() == g_defaultKeyNames.size())
            g_customKeyNames = *names;
        else
            logUnreadable(GRPrefKeyNamesKey, keysValue);
    }

    if (!s_readOnly && !settings.contains(QLatin1String(GRPrefPrintHeaderAndFooterKey)))
        settings.setValue(QLatin1String(GRPrefPrintHeaderAndFooterKey), true);
}

void GRPrefController::savePreferences()
{
    if (s_readOnly)
        return;
    QSettings settings(SettingsOrganization, SettingsApplication);
    settings.setValue(QLatin1String(GRPrefDisplayFontKey), m_displayFont.toString());
    settings.setValue(QLatin1String(GRPrefPrintFontKey), m_printFont.toString());
    settings.setValue(QLatin1String(GRPrefPrintInfoKey), m_printInfo.toString());
    settings.setValue(QLatin1String(GRPrefPrintScopeKey), m_printScope);
    settings.setValue(QLatin1String(GRPrefIgnorePageStartsKey), m_ignorePageStarts);
    settings.setValue(QLatin1String(GRPrefShowKeysKey), m_showKeys);
    settings.setValue(QLatin1String(GRPrefConfirmDeleteKey), m_confirmDelete);
    if (m_emailTarget.isEmpty())
        settings.remove(QLatin1String(GRPrefEmailTargetKey));
    else
        settings.setValue(QLatin1String(GRPrefEmailTargetKey), m_emailTarget);
    if (g_customKeyNames.size() == g_defaultKeyNames.size())
        settings.setValue(QLatin1String(GRPrefKeyNamesKey), g_customKeyNames);
    else
        settings.remove(QLatin1String(GRPrefKeyNamesKey));
    settings.sync();
    if (settings.status() != QSettings::NoError)
        MGLog(QStringLiteral("Can't write preferences %1: %2")
                  .arg(settings.fileName(), settings.status() == QSettings::AccessError
                                                ? QStringLiteral("access error")
                                                : QStringLiteral("format error")));
}

void GRPrefController::updateCategories(GRGroceryDatabase &database)
{
    database.updateCategoryOrder();
    emit categoryTableChanged();
}

void GRPrefController::resetOrder(GRGroceryDatabase &database)
{
    database.setManualOrder(false);
    m_dirty = true;
    updateCategories(database);
    emit markWindowEdited();
}
