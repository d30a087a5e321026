#include "GRTestSupport.h"

#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRDiskStamp.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRPrefController.h"
#include "GRStore.h"
#include "MGAlert.h"
#include "MGUndoManager.h"
#include "MGXmlDecoder.h"

#include <QFile>
#include <QStandardPaths>

QByteArray GRTestSupport::sampleDatabase()
{
    return R"(<?xml version="1.0" encoding="UTF-8"?><groceries version="1"><stores>
<store><name>Corner Shop</name></store><store><name>Bakery Bros</name></store>
<store><name>Market</name></store></stores><categories>
<category><name>Dairy</name></category><category><name>Fruit</name></category>
<category><name>Pantry</name></category></categories><items>
<item><name>Milk</name><category>0</category><store>0</store><need>1</need></item>
<item><name>Buttermilk</name><category>0</category><store>1</store></item>
<item><name>Cheese</name><category>0</category><store>2</store></item>
<item><name>Apples</name><category>1</category><store>2</store><need>1</need></item>
<item><name>Bananas</name><category>1</category><store>0</store></item>
<item><name>Flour</name><category>2</category><store>1</store></item></items></groceries>)";
}

QString GRTestSupport::dump(const GRGroceryDatabase &database)
{
    QStringList categories;
    for (const GRCategoryPtr &category : database.categories()) {
        QStringList items;
        for (const GRItemPtr &item : category->items()) {
            items << item->name() + u'@' + (item->store() ? item->store()->name() : QString()) +
                         (item->isNeeded() ? QStringLiteral("*") : QString());
            if (item->category() != category)
                items.last() += QStringLiteral("!wrong-category");
            if (database.indexOfStore(item->store().get()) < 0)
                items.last() += QStringLiteral("!dead-store");
        }
        categories << category->name() + QStringLiteral(": ") + items.join(QStringLiteral(", "));
    }
    QStringList stores;
    for (const GRStorePtr &store : database.stores())
        stores << store->name();
    return categories.join(QStringLiteral(" | ")) + QStringLiteral(" / ") + stores.join(QStringLiteral(", "));
}

void GRTestSupport::initEnvironment()
{
    QStandardPaths::setTestModeEnabled(true);
}

QString GRTestSupport::dataPath(const QString &relative)
{
    return QStringLiteral(GR_TEST_DATA_DIR "/") + relative;
}

void GRTestSupport::resetState()
{
    g_dirty = false;
    g_databaseStamp = GRDiskStamp();
    GRPrefController::sharedInstance().setDirty(false);
    MGAlert &alert = MGAlert::sharedInstance();
    alert.clearNextAnswers();
    alert.clearShownAlerts();
    alert.setRecordingAlerts(true);
    SetDatabaseFileOps(nullptr);
    MGXmlDecoder::setKeyDecoder(std::make_shared<MGXmlDecoder::KeyTable>());
}

QStringList GRTestSupport::alerts()
{
    QStringList list;
    for (const MGAlert::Request &request : MGAlert::sharedInstance().shownAlerts())
        list << (QStringList{request.message, request.moreInfo} + request.buttonStrings).join(u'|');
    return list;
}

QByteArray GRTestSupport::readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool GRTestSupport::writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

static QStringList s_lines;
static QtMessageHandler s_previous = nullptr;
static int s_captures = 0;

static void record(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg)
        s_lines.append(message);
}
GRLogCapture::GRLogCapture()
{
    if (s_captures++ == 0) {
        s_lines.clear();
        s_previous = qInstallMessageHandler(record);
    }
}

GRLogCapture::~GRLogCapture()
{
    if (--s_captures == 0)
        qInstallMessageHandler(s_previous);
}

const QStringList &GRLogCapture::lines() const
{
    return s_lines;
}

bool GRLogCapture::contains(const QString &fragment) const
{
    for (const QString &line : s_lines) {
        if (line.contains(fragment))
            return true;
    }
    return false;
}

void GRLogCapture::clear()
{
    s_lines.clear();
}

GRItemPtr GRTestSupport::item(const GRGroceryDatabase &database, const QString &name)
{
    for (const GRCategoryPtr &category : database.categories())
        for (const GRItemPtr &entry : category->items())
            if (entry->name() == name)
                return entry;
    return nullptr;
}

QString GRTestSupport::undoTitle(bool redo)
{
    QString title;
    MGUndoManager::sharedInstance().validateState(!redo, &title);
    return title;
}

void GRTestSupport::quietUndo()
{
    MGUndoManager::setBeepHandler([] {});
    MGUndoManager::setModalCheck([] { return false; });
}
