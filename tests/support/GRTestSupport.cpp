#include "GRTestSupport.h"

#include "GRDatabaseFile.h"
#include "GRPrefController.h"
#include "MGAlert.h"
#include "MGXmlDecoder.h"

#include <QFile>
#include <QStandardPaths>

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
    GRPrefController::sharedInstance().setDirty(false);
    MGAlert &alert = MGAlert::sharedInstance();
    alert.clearNextAnswers();
    alert.clearShownAlerts();
    alert.setRecordingAlerts(true);
    SetDatabaseFileOps(nullptr);
    MGXmlDecoder::setKeyDecoder(std::make_shared<MGXmlDecoder::KeyTable>());
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
