// Feeds arbitrary text through a drag pasteboard to the drop side's index reader, and checks
// that every index the item list can write reads back as itself.
#include "GRNames.h"
#include "MGDragPasteboard.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text = QString::fromUtf8(bytes);

    // The drop reads the string as bytes, which must read as the string itself would.
    MGDragPasteboard pasteboard;
    pasteboard.setString(text, GRDragPasteboardType);
    const QByteArray dropped = pasteboard.data(GRDragPasteboardType);
    check(dropped == text.toUtf8());
    const std::optional<qint64> index = MGDragPasteboard::integerFromData(dropped);
    check(index == MGDragPasteboard::integerFromData(bytes));
    if (index) {
        check(MGDragPasteboard::integerFromData(QByteArray::number(*index)) == index);
        check(MGDragPasteboard::integerFromData(" \t" + QByteArray::number(*index) + "\r\n") == index);
    }

    // Any row the list view can put on the pasteboard, whatever the number of items.
    qint64 row = 0;
    if (size > 0)
        std::memcpy(&row, data, std::min(size, sizeof row));
    MGDragPasteboard written;
    written.setString(QString::number(row), GRDragPasteboardType);
    check(MGDragPasteboard::integerFromData(written.data(GRDragPasteboardType)) == row);
    return 0;
}
