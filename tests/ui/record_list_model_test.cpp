#include "support/test_main.h"
#include "ui/presenters/record_list_model.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

struct Item {
    int key = 0;
    int size = 0;
    int unseen = 0; // in no role

    bool operator==(const Item&) const = default;
};

using Items = QList<Item>;
using Model = RecordListModel<Item, &Item::key>;

constexpr int KeyRole = Qt::UserRole;
constexpr int SizeRole = Qt::UserRole + 1;

Model::Roles roles() {
    return {{"key",
             [](const Item& item) {
                 return QVariant(item.key);
             }},
            {"size", [](const Item& item) {
                 return QVariant(item.size);
             }}};
}

Items numbered(std::initializer_list<int> keys) {
    Items items;
    for (const int key : keys)
        items.append({key, 0, 0});
    return items;
}

Items counted(int count) {
    Items items;
    for (int key = 0; key < count; ++key)
        items.append({key, 0, 0});
    return items;
}

// A model, checked by Qt's own tester on every signal, and what it emitted.
struct Watched {
    explicit Watched(Items items) { model.reset(std::move(items)); }

    // Steps other than changes within rows.
    qsizetype steps() const { return removed.size() + inserted.size() + moved.size(); }
    bool shows(const Items& items) const {
        if (model.rowCount() != items.size())
            return false;
        for (int row = 0; row < items.size(); ++row) {
            const QModelIndex index = model.index(row);
            if (index.data(KeyRole) != items[row].key || index.data(SizeRole) != items[row].size)
                return false;
        }
        return true;
    }

    Model model{roles()};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QSignalSpy removed{&model, &Model::rowsRemoved};
    QSignalSpy inserted{&model, &Model::rowsInserted};
    QSignalSpy moved{&model, &Model::rowsMoved};
    QSignalSpy changed{&model, &Model::dataChanged};
    QSignalSpy reset{&model, &Model::modelReset};
};

// The next state of a list that a TV might send: a few edits, now and then many, some keys twice.
Items edited(Items items, std::mt19937& random) {
    const auto upTo = [&](qsizetype end) {
        return end > 0 ? static_cast<int>(random() % static_cast<unsigned>(end)) : 0;
    };
    const int edits = random() % 8 == 0 ? 40 : 3;
    for (int i = 0; i < edits; ++i) {
        switch (random() % 5) {
        case 0:
            items.insert(upTo(items.size() + 1), {upTo(60), upTo(3), 0});
            break;
        case 1:
            if (!items.isEmpty())
                items.removeAt(upTo(items.size()));
            break;
        case 2:
            if (!items.isEmpty())
                items.move(upTo(items.size()), upTo(items.size()));
            break;
        case 3:
            if (!items.isEmpty())
                items[upTo(items.size())].size = upTo(3);
            break;
        default:
            std::rotate(items.begin(), items.begin() + upTo(items.size()), items.end());
        }
    }
    return items;
}

} // namespace

class RecordListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void randomEditsEndInTheSameList() {
        std::mt19937 random(7);
        Items items = counted(20);
        Watched watched(items);
        for (int round = 0; round < 2000; ++round) {
            items = edited(std::move(items), random);
            watched.model.assign(items);
            QVERIFY2(watched.shows(items), qPrintable(u"round %1"_s.arg(round)));
        }
        QCOMPARE(watched.reset.size(), 1);
    }

    void anUnchangedListSaysNothing() {
        Watched watched(counted(5));
        watched.model.assign(counted(5));
        Items differsUnseen = counted(5);
        differsUnseen[2].unseen = 1;
        watched.model.assign(differsUnseen);
        QCOMPARE(watched.steps() + watched.changed.size(), 0);
        QCOMPARE(watched.model.rows(), differsUnseen);
    }

    void onlyTheChangedRoleIsTold() {
        Watched watched(counted(5));
        Items items = counted(5);
        items[3].size = 9;
        watched.model.assign(items);
        QCOMPARE(watched.changed.size(), 1);
        QCOMPARE(watched.changed[0][0].toModelIndex().row(), 3);
        QCOMPARE(watched.changed[0][1].toModelIndex().row(), 3);
        QCOMPARE(watched.changed[0][2].value<QList<int>>(), QList<int>{SizeRole});
    }

    void likeChangesOfNeighboursAreToldTogether() {
        Watched watched(counted(6));
        Items items = counted(6);
        for (const int row : {1, 2, 4})
            items[row].size = 9;
        watched.model.assign(items);
        QCOMPARE(watched.changed.size(), 2);
        QCOMPARE(watched.changed[0][1].toModelIndex().row(), 2);
        QCOMPARE(watched.changed[1][0].toModelIndex().row(), 4);
    }

    void runsOfRowsAreOneStep_data() {
        QTest::addColumn<Items>("target"); // of 0 to 7
        QTest::addColumn<int>("moved");
        QTest::addColumn<int>("others");
        QTest::newRow("to the end") << numbered({1, 2, 3, 4, 5, 6, 7, 0}) << 1 << 0;
        QTest::newRow("to the start") << numbered({7, 0, 1, 2, 3, 4, 5, 6}) << 1 << 0;
        QTest::newRow("within") << numbered({0, 3, 1, 2, 4, 5, 6, 7}) << 1 << 0;
        QTest::newRow("a block") << numbered({5, 6, 7, 0, 1, 2, 3, 4}) << 1 << 0;
        QTest::newRow("come and go") << numbered({0, 10, 11, 1, 2, 5, 6, 7}) << 0 << 2;
    }
    void runsOfRowsAreOneStep() {
        QFETCH(Items, target);
        Watched watched(counted(8));
        watched.model.assign(target);
        QVERIFY(watched.shows(target));
        QTEST(int(watched.moved.size()), "moved");
        QTEST(int(watched.removed.size() + watched.inserted.size()), "others");
    }

    void equalKeysAreRowsOfTheirOwn() {
        const Items twice{{1, 1, 0}, {2, 0, 0}, {1, 2, 0}, {1, 3, 0}};
        Watched watched(twice);
        const Items target{{1, 1, 0}, {1, 2, 0}, {3, 0, 0}, {1, 3, 0}, {2, 4, 0}};
        watched.model.assign(target);
        QVERIFY(watched.shows(target));
        QCOMPARE(watched.inserted.size(), 1);
        watched.model.assign({});
        QCOMPARE(watched.model.rowCount(), 0);
    }

    void manyChangesReplaceTheirSpanOnly() {
        const int count = 4 * ListChange::maximumRuns;
        Watched watched(counted(count));
        Items target = counted(count);
        for (int row = 100; row < count - 100; row += 2)
            target[row].key += count;
        watched.model.assign(target);
        QVERIFY(watched.shows(target));
        QCOMPARE(watched.steps(), 2);
        QCOMPARE(watched.removed[0][1].toInt(), 100);
        QCOMPARE(watched.removed[0][2].toInt(), count - 102);
        QCOMPARE(watched.reset.size(), 1); // the first
        watched.model.reset(counted(2));
        QCOMPARE(watched.reset.size(), 2);
    }

    void ofManyRowsThatDifferTheLastAreToldTogether() {
        constexpr int count = 100'000;
        Model model(roles());
        model.reset(counted(count));
        QSignalSpy changed(&model, &Model::dataChanged);
        QSignalSpy removed(&model, &Model::rowsRemoved);
        Items target = counted(count);
        for (int row = 0; row < count; row += 2)
            target[row].size = 1;
        model.assign(target);
        QCOMPARE(changed.size(), ListChange::maximumCompared + 1);
        QCOMPARE(changed.last()[1].toModelIndex().row(), count - 1);
        for (int row = 0; row < count; row += 800)
            target[row].key += count;
        model.assign(target);
        QCOMPARE(removed.size(), 1); // a list that long affords 100 steps
        QCOMPARE(model.index(800).data(KeyRole), count + 800);
    }

    void oneChangeAmongManyRowsIsCheap() {
        constexpr int count = 100'000;
        Model model(roles());
        model.reset(counted(count));
        QSignalSpy changed(&model, &Model::dataChanged);
        QSignalSpy removed(&model, &Model::rowsRemoved);
        QElapsedTimer timer;
        timer.start();
        for (int round = 1; round <= 20; ++round) {
            Items items = counted(count);
            items[50'000].size = round;
            model.assign(items);
        }
        QCOMPARE(changed.size(), 20);
        QCOMPARE(changed[0][0].toModelIndex().row(), 50'000);
        QCOMPARE(changed[0][1].toModelIndex().row(), 50'000);
        QCOMPARE(removed.size(), 0);
        QVERIFY2(timer.elapsed() < 20'000,
                 "grows faster than the list"); // takes well under a second
    }
};

static const quiv::TestCase<RecordListModelTest> registered;
#include "record_list_model_test.moc"
