#include "GRPrintPagination.h"

#include "GRAisles.h"
#include "GRCategory.h"
#include "GRGroceryDatabase.h"
#include "GRItem.h"
#include "GRKeyNames.h"
#include "GRStore.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace {

using Type = GRPrintItem::Type;

// Never matches an aisle group, so a short or damaged aisle order places nothing by it.
constexpr qint64 NoGroup = -1;

} // namespace

GRPrintPagination::GRPrintPagination(const GRGroceryDatabase &database) : m_database(database)
{
    setAisleOrderTable(GRGroceryDatabase::defaultAisleOrder());
}

void GRPrintPagination::setScope(GRPrintScope scope, const QString &storeGuid, bool ignorePageStarts)
{
    m_scope = scope;
    m_storeGuid = storeGuid;
    m_ignorePageStarts = ignorePageStarts;
}

void GRPrintPagination::setFontLineHeight(double height)
{
    const float raised = std::max(float(height), MinimumLineHeight);
    m_lineHeight = quint64(raised);
}

void GRPrintPagination::setAisleOrderTable(const QList<qint64> &aisleOrder)
{
    m_aisleOrder.fill(NoGroup);
    for (qsizetype i = 0; i < qsizetype(m_aisleOrder.size()) && i < aisleOrder.size(); ++i)
        m_aisleOrder[size_t(i)] = aisleOrder[i];
}

QString GRPrintPagination::storeGuidOrFirst(const GRGroceryDatabase &database, const QString &guid)
{
    if (!guid.isEmpty() && database.storeForGuid(guid))
        return guid;
    return database.stores().isEmpty() ? QString() : database.stores().first()->guid();
}

void GRPrintPagination::layout()
{
    setAisleOrderTable(m_database.aisleOrder());
    m_printOptions.clear();
    for (const GRStorePtr &store : m_database.stores())
        m_printOptions.append(store->printOption());
    m_columnCount = std::max<quint64>(m_database.columnCount(), 1);
    m_columnWidth = std::floor((m_pageSize.width() - double(m_columnCount - 1) * Gutter) / double(m_columnCount));
    const double lines = m_pageSize.height() / double(m_lineHeight);
    m_linesPerPage = std::max<quint64>(lines > 0 ? quint64(lines) : 0, MinimumLinesPerPage);
    m_pages.clear();

    GRPrintScope scope = m_scope;
    const GRStore *chosen = nullptr;
    if (scope == GRPrintScope::OneStore) {
        for (const GRStorePtr &store : m_database.stores()) {
            if (store->guid() == m_storeGuid) {
                chosen = store.get();
                break;
            }
        }
        if (!chosen)
            scope = GRPrintScope::EntireList;
    }
    m_effectiveScope = scope;

    QList<GRPrintItem> entries = itemEntries(scope, chosen);
    std::stable_sort(entries.begin(), entries.end(),
                     [this](const GRPrintItem &a, const GRPrintItem &b) { return compare(a, b) < 0; });
    preliminaryLayout(entries, scope);
    for (qsizetype page = m_pages.size() - 1; page >= 0; --page)
        layoutPage(page);
}

QList<GRPrintItem> GRPrintPagination::itemEntries(GRPrintScope scope, const GRStore *chosenStore) const
{
    QHash<const GRCategory *, quint64> categoryPlaces;
    const QList<GRCategoryOrderEntry> &order = m_database.categoryOrder();
    for (qsizetype i = order.size() - 1; i >= 0; --i)
        categoryPlaces.insert(order[i].cat.get(), quint64(i));
    QHash<const GRStore *, quint64> storePlaces;
    const QList<GRStorePtr> &stores = m_database.stores();
    for (qsizetype i = stores.size() - 1; i >= 0; --i)
        storePlaces.insert(stores[i].get(), quint64(i));

    QList<GRPrintItem> entries;
    for (const GRCategoryPtr &category : m_database.categories()) {
        for (const GRItemPtr &item : category->items()) {
            if (scope == GRPrintScope::OneStore && item->store().get() != chosenStore)
                continue;
            if (scope == GRPrintScope::NeededItems && !item->isNeeded())
                continue;
            const auto store = storePlaces.constFind(item->store().get());
            if (store == storePlaces.cend())
                continue; // a section needs a store to head it
            GRPrintItem entry(Type::Grocery, item->displayName(), *store);
            if (entry.name().size() >= 4 && entry.name().startsWith(u'('))
                entry.setSortName(item->name());
            entry.setAisle(item->aisle());
            entry.setNeeded(item->isNeeded());
            entry.setCategoryIndex(categoryPlaces.value(category.get(), 0));
            entries.append(entry);
        }
    }
    return entries;
}

int GRPrintPagination::compare(const GRPrintItem &a, const GRPrintItem &b) const
{
    if (a.storeIndex() != b.storeIndex())
        return a.storeIndex() < b.storeIndex() ? -1 : 1;
    const qint32 option = m_printOptions[qsizetype(a.storeIndex())];
    if (option == 0 && a.categoryIndex() != b.categoryIndex())
        return a.categoryIndex() < b.categoryIndex() ? -1 : 1;
    if (option == 1 && a.aisle() != b.aisle())
        return compareAisles(a.aisle(), b.aisle());
    return a.sortName().compare(b.sortName(), Qt::CaseInsensitive);
}

qsizetype GRPrintPagination::aislePlace(qint64 aisle) const
{
    const qint64 group = aisle > 0 ? 0 : -aisle;
    const auto found = std::find(m_aisleOrder.begin(), m_aisleOrder.end(), group);
    return found - m_aisleOrder.begin();
}

int GRPrintPagination::compareAisles(qint64 x, qint64 y) const
{
    // Items without an aisle follow the numbered aisles but share their place in the aisle order.
    if (x == 0 && y > 0)
        return 1;
    if (y == 0 && x > 0)
        return -1;
    if (x >= 0 && y >= 0)
        return x < y ? -1 : 1;
    return aislePlace(x) < aislePlace(y) ? -1 : 1;
}

void GRPrintPagination::preliminaryLayout(const QList<GRPrintItem> &sortedEntries, GRPrintScope scope)
{
    if (sortedEntries.isEmpty())
        return;
    const QList<GRStorePtr> &stores = m_database.stores();
    const QList<GRCategoryOrderEntry> &categoryOrder = m_database.categoryOrder();
    const bool honourPageStarts = !(scope == GRPrintScope::NeededItems && m_ignorePageStarts);

    QList<GRPrintItem> page;
    std::optional<quint64> storeIndex;
    qint32 grouping = 0;
    // Forgotten at every store, so each section opens with its first group's heading.
    bool groupKnown = false;
    quint64 category = 0;
    qint64 aisle = 0;
    bool marked = false;
    for (const GRPrintItem &entry : sortedEntries) {
        if (entry.storeIndex() != storeIndex) {
            storeIndex = entry.storeIndex();
            const GRStore &store = *stores[qsizetype(entry.storeIndex())];
            if (store.topOfPage() && !page.isEmpty() && honourPageStarts) {
                m_pages.append(page);
                page.clear();
            }
            page.append(GRPrintItem(Type::StoreHeading, store.name(), entry.storeIndex()));
            grouping = m_printOptions[qsizetype(entry.storeIndex())];
            groupKnown = false;
        }
        if (grouping == 0) {
            if (!categoryOrder.isEmpty() && (!groupKnown || entry.categoryIndex() != category)) {
                groupKnown = true;
                category = entry.categoryIndex();
                if (entry.categoryIndex() < quint64(categoryOrder.size())) {
                    GRPrintItem heading(Type::GroupHeading, categoryOrder[qsizetype(entry.categoryIndex())].cat->name(),
                                        entry.storeIndex());
                    heading.setCategoryIndex(entry.categoryIndex());
                    page.append(heading);
                }
            }
        } else if (grouping == 1) {
            if (!groupKnown || entry.aisle() != aisle) {
                groupKnown = true;
                aisle = entry.aisle();
                GRPrintItem heading(Type::GroupHeading, GRAisles::displayName(entry.aisle()), entry.storeIndex());
                heading.setAisle(entry.aisle());
                page.append(heading);
            }
        }
        page.append(entry);
        marked = marked || ContainsKeyMark(entry.name());
    }
    if (!page.isEmpty())
        m_pages.append(page);

    if (!marked || sortedEntries.size() < 2)
        return;
    // The legend carries the second entry's store, not the first's: that is what keeps it with
    // the first section when the first store has a single item.
    const quint64 legendStore = sortedEntries[1].storeIndex();
    const quint64 legendCategory = quint64(m_database.categories().size());
    QList<GRPrintItem> legend;
    GRPrintItem keys(Type::GroupHeading, QStringLiteral("Keys"), legendStore);
    keys.setCategoryIndex(legendCategory);
    legend.append(keys);
    for (const QString &line : std::as_const(g_keyStrings)) {
        GRPrintItem key(Type::KeyLegend, line, legendStore);
        key.setCategoryIndex(legendCategory);
        legend.append(key);
    }
    if (m_printOptions[qsizetype(legendStore)] == 2)
        legend.append(GRPrintItem(Type::GroupHeading, QStringLiteral("Items"), legendStore));
    QList<GRPrintItem> &first = m_pages.first();
    for (qsizetype i = 0; i < legend.size(); ++i)
        first.insert(1 + i, legend[i]);
}

void GRPrintPagination::layoutPage(qsizetype pageIndex)
{
    while (pageIndex < m_pages.size()) {
        const qsizetype breakAt = flowPage(m_pages[pageIndex]);
        if (breakAt < 0)
            return;
        QList<GRPrintItem> &page = m_pages[pageIndex];
        QList<GRPrintItem> rest(std::make_move_iterator(page.begin() + breakAt), std::make_move_iterator(page.end()));
        page.resize(breakAt);
        m_pages.insert(pageIndex + 1, std::move(rest));
        ++pageIndex;
    }
}

qsizetype GRPrintPagination::flowPage(QList<GRPrintItem> &page) const
{
    const double lineHeight = double(m_lineHeight);
    quint64 linesLeft = m_linesPerPage;
    double y = 0;
    qsizetype i = 0;
    while (i < page.size()) {
        const quint64 storeIndex = page[i].storeIndex();
        qsizetype j = i;
        while (j < page.size() && page[j].storeIndex() == storeIndex)
            ++j;
        const quint64 rows = (quint64(j - i) + m_columnCount - 1) / m_columnCount;
        qsizetype bodyStart = i;
        if (page[i].type() == Type::StoreHeading) {
            // A store heading never stands alone at the foot of a page.
            if (linesLeft < 4 || (linesLeft < 6 && rows > 2))
                return i;
            if (linesLeft != m_linesPerPage) {
                y += 2 * lineHeight;
                linesLeft -= 2;
            }
            page[i].setPosition(QPointF(0, y));
            y += lineHeight;
            linesLeft -= 1;
            bodyStart = i + 1;
        }

        quint64 height = std::min(rows, linesLeft);
        // A group heading never stands alone at the foot of a column.
        for (quint64 column = 1; column <= m_columnCount; ++column) {
            const qsizetype last = bodyStart - 1 + qsizetype(column * height);
            if (last >= j)
                break;
            if (page[last].type() != Type::GroupHeading)
                continue;
            if (quint64(j - bodyStart) % height == 0 && linesLeft > height) {
                ++height;
                for (qsizetype k = last; k >= bodyStart; --k) {
                    if (page[k].type() == Type::Spacer) {
                        page.removeAt(k);
                        --j;
                    }
                }
            } else {
                page.insert(last, GRPrintItem(Type::Spacer, QString(), storeIndex));
                ++j;
            }
        }

        qsizetype k = bodyStart;
        double x = 0;
        for (quint64 column = 0; column < m_columnCount; ++column) {
            for (quint64 row = 0; row < height && k < j; ++row, ++k)
                page[k].setPosition(QPointF(x, y + double(row) * lineHeight));
            x += m_columnWidth + Gutter;
        }
        if (k < j)
            return k;
        linesLeft -= height;
        if (linesLeft == 0)
            return j < page.size() ? j : -1;
        y += double(height) * lineHeight;
        i = j;
    }
    return -1;
}
