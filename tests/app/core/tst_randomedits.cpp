#include "GRCategory.h"
#include "GRDatabaseFile.h"
#include "GRGroceryDatabase.h"
#include "GRGroceryEdits.h"
#include "GRGroceryQueries.h"
#include "GRItem.h"
#include "GRItemFields.h"
#include "GRKeyNames.h"
#include "GRNameSorter.h"
#include "GRNames.h"
#include "GROrderEdits.h"
#include "GRPosixFileOps.h"
#include "GRPrefController.h"
#include "GRSnapshotUndo.h"
#include "GRStore.h"
#include "GRTestSupport.h"
#include "GRTestWindow.h"
#include "GRUndoKinds.h"
#include "MGNotificationCenter.h"
#include "MGUndoManager.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>

namespace {

using A = GRUndoAction;
using D = GRUndoDescriptor;
using E = GRGroceryEdits;

// Names with case twins, XML specials, accents, a key mark and a character beyond the BMP.
const QStringList Words = {"Apples",          "apples", "Bread",        "Crème fraîche",
                           "Fish & Chips",    "<Tofu>", "Tea \"Earl\"", "Milk \u2744",
                           "Rice \U0001F35A", "Salt",   "Eggs",         "Zucchini"};

struct Session
{
    GRGroceryDatabase db;
    QList<GRItemPtr> shown;
    GRTestWindow window{db, shown};
    GRSnapshotUndo undo{db, shown};
    Session()
    {
        undo.setView(&window);
        undo.install();
    }
};

// Hashes of what a save writes, far cheaper than the text: the categories with their items in list
// order and in any order, and the aisle order, category order and column count.
struct Digest
{
    size_t content = 0, anyOrder = 0, orders = 0;
    bool operator==(const Digest &) const = default;
};

Digest digest(const GRGroceryDatabase &db)
{
    size_t stores = 0;
    for (const GRStorePtr &store : db.stores())
        stores = qHashMulti(stores, store->name(), store->kolor().word(), store->printOption(),
                            store->topOfPage());
    QList<size_t> categories;
    categories.reserve(db.categories().size());
    for (const GRCategoryPtr &category : db.categories()) {
        size_t hash = qHash(category->name());
        for (const GRItemPtr &item : category->items())
            hash = qHashMulti(hash, item->name(), db.indexOfStore(item->store().get()), item->aisle(),
                              item->isNeeded(), item->needCount());
        categories << hash;
    }
    Digest result{qHashRange(categories.begin(), categories.end(), stores),
                  qHashRangeCommutative(categories.begin(), categories.end(), stores),
                  qHashMulti(qHashRange(db.aisleOrder().begin(), db.aisleOrder().end()), db.columnCount())};
    for (const GRCategoryOrderEntry &entry : db.categoryOrder())
        result.orders = qHashMulti(result.orders, db.manualOrder() ? db.indexOfCategory(entry.cat.get()) : 0);
    return result;
}

// The real files without the flushes, which would keep hundreds of saves waiting for the disk.
class UnflushedFileOps : public GRPosixFileOps
{
public:
    bool sync(int, QString *) override { return true; }
    bool syncFolder(const QString &, QString *) override { return true; }
};

} // namespace

// A long random run of every command of the list, undo, redo, save and reload. After each step the
// records hang together, undo then redo gives back what was saved, a database that differs from
// its file is marked edited, and the undo ring keeps its 25 steps. GR_RANDOM_SEED and
// GR_RANDOM_STEPS override the seed and the length.
class TestRandomEdits : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    UnflushedFileOps m_fileOps;
    std::unique_ptr<Session> m_s;
    QRandomGenerator m_random;
    MGUndoManager &m_undo = MGUndoManager::sharedInstance();
    Digest m_digest, m_savedDigest;
    QString m_savedText, m_clipboard, m_problem;
    QList<Digest> m_befores;  // the database before each step in the undo ring
    qsizetype m_undoable = 0; // of those steps
    int m_step = 0;
    bool m_categoryMoved = false; // by an undo or redo since the save

    int pick(qsizetype count) { return count > 0 ? int(m_random.bounded(quint32(count))) : -1; }
    // Arguments are evaluated in no fixed order: one pick per call keeps a seed's run the same
    // whatever the compiler.
    QString name()
    {
        const QString word = Words.at(pick(Words.size()));
        return pick(2) ? word + QString(" %1").arg(pick(40)) : word;
    }
    GRGroceryDatabase &db() { return m_s->db; }
    GRTestWindow &window() { return m_s->window; }
    GRItemPtr shownItem() { return m_s->shown.value(pick(m_s->shown.size())); }
    void expect(bool ok, const char *what)
    {
        if (!ok && m_problem.isEmpty())
            m_problem = what;
    }
    static QString stepName(bool redo) { return GRTestSupport::undoTitle(redo).section(u' ', 1, -1); }

    // Every command records its step first; none is ever refused here.
    bool record(A action, D descriptor, const GRCategoryPtr &context = nullptr)
    {
        const bool recorded = RecordUndo(action, descriptor, context);
        expect(recorded, "an undo step was refused");
        m_befores.resize(m_undoable);
        m_befores.append(m_digest);
        if (m_befores.size() > 25) // the oldest step goes
            m_befores.removeFirst();
        m_undoable = m_befores.size();
        return recorded;
    }
    void installStores(const QList<GRStorePtr> &stores, D descriptor)
    {
        if (!record(A::CategoriesAndStores, descriptor))
            return;
        E::installNewStores(db(), stores);
        MGNotificationCenter::defaultCenter().post(GRUpdateStoresNotification);
    }
    void categoriesChanged(qint64 row)
    {
        window().reloadCategoriesCore(row);
        MGNotificationCenter::defaultCenter().post(GRUpdateCatsNotification);
    }
    // The preferences window's drags change the database's orders without an undo step.
    void orderChanged(bool moved)
    {
        GRPrefController::sharedInstance().setDirty(GRPrefController::sharedInstance().dirty() || moved);
        window().updateEditedMark();
    }
    // The stores sheet edits copies of the stores and hands them over on OK.
    void editStores()
    {
        QList<GRStorePtr> stores;
        for (const GRStorePtr &store : db().stores())
            stores << store->copy();
        for (int edits = pick(4); edits >= 0; --edits) {
            const int row = pick(stores.size()), part = pick(5);
            if (part == 0 && row > 0)
                stores[row]->setName(name());
            else if (part == 1)
                stores[row]->setKolor(KolorFromColor(QColor{pick(256), pick(256), pick(256), pick(256)}));
            else if (part == 2)
                stores[row]->setPrintOption(pick(3)), stores[row]->setTopOfPage(pick(2));
            else if (part == 3 && stores.size() < 12)
                stores << GRStore::create(), stores.last()->setName("New store");
            else if (part == 4 && row > 0)
                stores.removeAt(row);
        }
        installStores(stores, D::Stores);
    }
    // The item sheet on the selected item, or on a new one.
    void editItem()
    {
        const GRItemPtr item = pick(3) ? shownItem() : nullptr;
        GRItemFields fields = item ? GRItemFields::fromItem(db(), item)
                                   : GRItemFields::forNewItem(window().currentCategory(),
                                                              window().storeMode ? window().row : -1);
        fields.name = item && pick(2) ? fields.name : name();
        fields.aisle = QStringList{"", "12", "3b", "x", "99999999999"}.at(pick(5));
        fields.specialAisle = pick(4) ? 0 : pick(7);
        fields.categoryIndex = pick(2) ? fields.categoryIndex : pick(db().categories().size());
        fields.storeIndex = pick(2) ? fields.storeIndex : pick(db().stores().size());
        fields.needed = pick(2);
        fields.count = pick(5);
        if (record(fields.undoAction(db(), item), GRItemFields::undoDescriptor(item), fields.category(db())))
            fields.apply(db(), m_s->shown, item);
    }
    // The item list's delete flips the mark after the snapshot; the question of the Delete key
    // may keep the item.
    void deleteItem(D descriptor)
    {
        if (const GRItemPtr item = shownItem()) {
            if (descriptor == D::CutItem)
                m_clipboard = E::itemPasteboardText(db(), item);
            if (record(A::Category, descriptor, item->category()))
                item->setNeeded(!item->isNeeded());
            if (descriptor == D::CutItem || pick(4))
                E::removeItem(m_s->shown, item);
        }
    }
    void undo(bool redo)
    {
        const QString step = stepName(redo);
        redo ? m_undo.redo() : m_undo.undo();
        m_digest = digest(db());
        if (!step.isEmpty()) {
            m_categoryMoved = m_categoryMoved || step.endsWith(QLatin1String(" Category"));
            m_undoable += redo ? 1 : -1;
            // The orders are preferences that undo leaves alone, and undoing a rename sorts the
            // categories that the steps before it may have left unsorted.
            expect(redo || m_digest.anyOrder == m_befores.value(m_undoable).anyOrder,
                   "undo does not give back the database before the step");
        }
    }
    void save()
    {
        const QString text = GroceriesXml(db());
        expect(SaveGroceries(db()), "save failed");
        window().updateEditedMark();
        expect(GRTestSupport::readFile(g_databasePath) == text.toUtf8(), "the file is not the text");
        expect(!DatabaseChanged() && !window().edited && !m_undo.isUndoAvailable(), "not clean after a save");
        m_savedText = text;
        m_savedDigest = m_digest;
        m_categoryMoved = false;
        m_befores.clear();
        m_undoable = 0;
    }
    // As at start-up, into a fresh database.
    void reload()
    {
        auto fresh = std::make_unique<Session>();
        expect(ReadModernDatabase(g_databasePath, fresh->db), "reload failed");
        m_s = std::move(fresh);
        g_dirty = false;
        GRPrefController::sharedInstance().setDirty(false);
        categoriesChanged(0);
        window().updateEditedMark();
        expect(GroceriesXml(db()) == m_savedText, "the reloaded database saves other text");
        m_savedDigest = m_digest = digest(db());
        m_categoryMoved = false;
        m_befores.clear();
        m_undoable = 0;
    }

    struct Command
    {
        const char *name;
        int weight;
        std::function<void()> run;
    };
    // clang-format off
    const QList<Command> m_commands = {
        {"Check Item", 8, [this] { if (const GRItemPtr item = shownItem(); item && record(A::Category, D::CheckItem, item->category()))
            item->setNeeded(!item->isNeeded()); }},
        {"Item Sheet", 8, [this] { editItem(); }},
        {"Delete Item", 6, [this] { deleteItem(D::DeleteItem); }},
        {"Cut Item", 3, [this] { deleteItem(D::CutItem); }},
        {"Copy Item", 2, [this] { if (const GRItemPtr item = shownItem()) m_clipboard = E::itemPasteboardText(db(), item); }},
        {"Paste Item", 2, [this] { const GRItemPtr item = E::itemFromPasteboardText(db(), m_clipboard.toUtf8());
            const GRCategoryPtr target = item ? db().categories().value(window().currentCategory(), item->category()) : nullptr;
            if (target && record(A::Category, D::PasteItem, target)) E::insertItem(target, item), m_s->shown.append(item); }},
        {"Duplicate", 2, [this] { if (const GRItemPtr item = shownItem(); item && record(A::Category, D::Duplicate, item->category()))
            E::duplicateItem(m_s->shown, item); }},
        {"Reassign Store", 3, [this] { const GRItemPtr item = shownItem(); const GRStorePtr store = db().stores().value(pick(db().stores().size()));
            if (item && record(A::Category, D::ReassignStore, item->category())) item->setStore(store); }},
        {"Drop On Category", 3, [this] { window().select(false, pick(db().categories().size()));
            const GRItemPtr item = shownItem(); const GRCategoryPtr target = db().categories().value(pick(db().categories().size()));
            if (item && item->category() != target && record(A::Categories, D::MoveItem)) E::moveItem(item, target), m_s->shown.removeAll(item); }},
        {"Drop On Store", 2, [this] { window().select(true, pick(db().stores().size()));
            const GRItemPtr item = shownItem(); const GRStorePtr target = db().stores().value(pick(db().stores().size()));
            if (item && item->store() != target && record(A::Category, D::ChangeItem, item->category())) E::reassignStore(item, target), m_s->shown.removeAll(item); }},
        {"Clear All Checkmarks", 1, [this] { if (record(A::Categories, D::ClearAllCheckmarks)) E::clearChecks(db()); }},
        {"Add Category", 3, [this] { window().select(false, 0);
            if (db().categories().size() < 20 && record(A::Categories, D::AddCategory)) E::addCategory(db()), categoriesChanged(db().categories().size() - 1); }},
        {"Rename Category", 2, [this] { window().select(false, pick(db().categories().size()));
            const GRCategoryPtr category = db().categories().value(window().row);
            if (category && record(A::Category, D::RenameCategory, category)) categoriesChanged(E::renameCategory(db(), category, name())); }},
        {"Delete Category", 2, [this] { window().select(false, pick(db().categories().size()));
            const GRCategoryPtr heir = E::categoryHeir(db(), window().row);
            if (heir && record(A::Categories, D::DeleteCategory)) E::mergeCategory(db(), db().categories().at(window().row), heir), categoriesChanged(0); }},
        {"Add Store", 1, [this] { window().select(true, 0);
            if (db().stores().size() < 12 && record(A::CategoriesAndStores, D::AddStore)) E::addStore(db()), window().reloadCategoriesCore(0); }},
        {"Rename Store", 2, [this] { if (const int row = pick(db().stores().size()); row > 0) installStores(E::storesRenaming(db(), row, name()), D::RenameStore); }},
        {"Delete Store", 1, [this] { if (const int row = pick(db().stores().size()); row > 0) installStores(E::storesWithout(db(), row), D::DeleteStore); }},
        {"Stores Sheet", 2, [this] { editStores(); }},
        {"Key Names", 1, [this] { g_customKeyNames = CustomKeyNamesAfterOK(g_customKeyNames, pick(2) ? g_defaultKeyNames : QStringList(6, name()));
            BuildKeyStrings(); }},
        {"Aisle Order", 2, [this] { const int from = pick(7); orderChanged(GROrderEdits::moveAisle(db(), from, pick(8)) >= 0); }},
        {"Category Order", 2, [this] { const qsizetype rows = db().categoryOrder().size(); const int from = pick(rows);
            orderChanged(GROrderEdits::moveCategory(db(), from, pick(rows + 1)) >= 0); }},
        {"Reset Order", 1, [this] { GRPrefController::sharedInstance().resetOrder(db()); orderChanged(true); }},
        {"Show Group", 3, [this] { const bool stores = pick(2); window().select(stores, pick(stores ? db().stores().size() : db().categories().size())); }},
        {"Show List", 3, [this] { const QList<GRItemPtr> lists[] = {GRGroceryQueries::allItems(db()), GRGroceryQueries::neededItems(db()),
            GRGroceryQueries::findItems(db(), name().left(3))}; window().showItems(lists[pick(3)]); }},
        {"Undo", 10, [this] { undo(false); }},
        {"Redo", 6, [this] { undo(true); }},
        {"Save", 1, [this] { save(); }},
        {"Reload", 1, [this] { reload(); }},
    };
    // clang-format on

    QString recordsProblem()
    {
        std::vector<const GRItem *> items;
        items.reserve(size_t(db().itemCount()));
        for (const GRCategoryPtr &category : db().categories()) {
            for (const GRItemPtr &item : category->items()) {
                if (!item || item->category() != category || db().indexOfStore(item->store().get()) < 0)
                    return QStringLiteral("an item names another category or a store that is gone");
                items.push_back(item.get());
            }
            if (std::count_if(db().categoryOrder().begin(), db().categoryOrder().end(),
                              [&](const GRCategoryOrderEntry &entry) { return entry.cat == category; }) != 1)
                return QStringLiteral("a category is not once in the category order");
        }
        // Raw pointers: iterators cost much more in the unoptimised sanitizer build.
        const GRItem **first = items.data(), **last = first + items.size();
        std::sort(first, last);
        if (std::adjacent_find(first, last) != last)
            return QStringLiteral("an item is in the lists twice");
        for (const GRItemPtr &item : std::as_const(m_s->shown)) {
            if (!std::binary_search(first, last, item.get()))
                return QStringLiteral("an item on show is not in the database");
        }
        return db().categoryOrder().size() == db().categories().size() && !db().stores().isEmpty()
                   ? QString()
                   : QStringLiteral("the category order holds more, or there is no store");
    }

    QString stepProblem()
    {
        if (!m_problem.isEmpty() || !(m_problem = recordsProblem()).isEmpty())
            return m_problem;
        if (m_undo.currentEntry() + 1 != m_undoable || m_undo.inUseCount() != quint32(m_befores.size()))
            return QStringLiteral("undo history %1 of %2, expected %3 of %4")
                .arg(m_undo.currentEntry() + 1)
                .arg(m_undo.inUseCount())
                .arg(m_undoable)
                .arg(m_befores.size());
        // Undoing a step that renamed, added or deleted a category may leave the categories in
        // another order than the file's while the step's flag says the file is current.
        const bool changed = DatabaseChanged();
        if (!changed && m_digest != m_savedDigest && GroceriesXml(db()) != m_savedText &&
            !(m_categoryMoved && m_digest.anyOrder == m_savedDigest.anyOrder))
            return QStringLiteral("changed since the save but not dirty");
        if (window().edited != changed)
            return QStringLiteral("the edited mark is not the dirty flags");
        if (m_undoable == 0)
            return {};

        // The digest stands for the text, which is compared itself now and then. Undo puts a
        // category it brings back at the end of the manual order, and sorts the categories after
        // a rename.
        const QString step = stepName(false), text = m_step % 25 == 0 ? GroceriesXml(db()) : QString();
        const Digest before = m_digest;
        undo(false);
        undo(true);
        if (!m_problem.isEmpty())
            return QStringLiteral("undo then redo: ") + m_problem;
        const bool same = step == QLatin1String("Rename Category") ? m_digest.anyOrder == before.anyOrder
                          : step.endsWith(QLatin1String(" Category"))
                              ? m_digest.content == before.content
                              : m_digest == before && (text.isEmpty() || GroceriesXml(db()) == text);
        if (!same)
            return QStringLiteral("undo then redo does not give back the text");
        return DatabaseChanged() == changed && window().edited == changed
                   ? QString()
                   : QStringLiteral("undo then redo changes the dirty flags");
    }

    // Stores, categories and a couple of hundred items made by the item sheet, saved as the file.
    void generateDatabase()
    {
        for (int i = 0; i < 7; ++i)
            E::addStore(db())->setName(name());
        for (int i = 0; i < 14; ++i)
            E::addCategory(db())->setName(name());
        SortByName(db().categories());
        categoriesChanged(0);
        for (int i = 0; i < 200; ++i) {
            GRItemFields{.name = name(),
                         .aisle = QString::number(pick(30)),
                         .specialAisle = pick(3) ? 0 : pick(7),
                         .categoryIndex = pick(14),
                         .storeIndex = pick(7),
                         .needed = pick(3) == 0,
                         .count = quint64(pick(4))}
                .apply(db(), m_s->shown, nullptr);
        }
        m_digest = digest(db());
        save();
    }

private slots:
    void initTestCase()
    {
        GRTestSupport::initEnvironment();
        GRTestSupport::resetState();
        SetDatabaseFileOps(&m_fileOps);
        GRTestSupport::quietUndo();
        QVERIFY(m_folder.isValid());
        g_databasePath = m_folder.filePath(QStringLiteral("Groceries.xml"));
        // What the application controller and the groups table do on these.
        MGNotificationCenter &center = MGNotificationCenter::defaultCenter();
        center.addObserver(GRUpdateCatsNotification, this, [this](const QVariantMap &) {
            GRPrefController::sharedInstance().updateCategories(db());
        });
        center.addObserver(GRUpdateStoresNotification, this, [this](const QVariantMap &) {
            if (window().storeMode)
                window().reloadCategoriesCore(0);
        });
    }

    void cleanupTestCase()
    {
        m_s.reset();
        SetDatabaseFileOps(nullptr);
    }

    void randomCommands()
    {
        const quint32 seed = qEnvironmentVariable("GR_RANDOM_SEED", QStringLiteral("20240611")).toUInt();
        const int steps = qEnvironmentVariable("GR_RANDOM_STEPS", QStringLiteral("20000")).toInt();
        m_random.seed(seed);
        m_s = std::make_unique<Session>();
        generateDatabase();
        reload();
        int total = 0;
        for (const Command &command : m_commands)
            total += command.weight;
        for (m_step = 0; m_step < steps; ++m_step) {
            int choice = pick(total), index = 0;
            while ((choice -= m_commands.at(index).weight) >= 0)
                ++index;
            m_commands.at(index).run();
            m_digest = digest(db());
            const QString problem = stepProblem();
            QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("seed %1, step %2 (%3): %4")
                                                       .arg(seed)
                                                       .arg(m_step)
                                                       .arg(m_commands.at(index).name, problem)));
        }
    }
};

QTEST_MAIN(TestRandomEdits)
#include "tst_randomedits.moc"
