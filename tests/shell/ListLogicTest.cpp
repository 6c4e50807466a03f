// The lists behind the window: type ticks and their mask, the session
// rows with their totals, sorting and cell texts, and the models that show
// them.
#include <QtTest>

#include "shell/ListModels.h"
#include "shell/SessionList.h"

using namespace morvanta;
using namespace morvanta::shell;

namespace {

FoundSession Found(const std::string& folder, const std::string& file, std::int64_t bytes, std::time_t created,
                   const std::string& version = "Audition 3.0") {
    FoundSession found;
    found.Folder = folder;
    found.File = file;
    found.Version = version;
    found.Bytes = bytes;
    found.Created = created;
    return found;
}

std::vector<std::string> Files(const SessionList& list) {
    std::vector<std::string> files;
    for (int i = 0; i < list.Count(); ++i) files.push_back(list.Row(i).File);
    return files;
}

}  // namespace

class ListLogicTest : public QObject {
    Q_OBJECT
private slots:
    void TypeTicksMaskBitsAreRowsOneToNineAndOneStaysTicked() {
        FileTypeTicks ticks;
        ticks.SelectAll();
        QCOMPARE(ticks.Mask(), 1022);
        ticks.SetMask((1 << 1) | (1 << 9));
        QVERIFY(ticks.Ticked(1));
        QVERIFY(!ticks.Ticked(2));
        QVERIFY(ticks.Ticked(9));
        QCOMPARE(ticks.Mask(), 514);
        // A mask without a row, as bit 0 alone, gives every row.
        ticks.SetMask(1);
        QCOMPARE(ticks.Mask(), 1022);

        // At least one type stays ticked.
        ticks.SelectAA3();
        QCOMPARE(ticks.Mask(), 1 << 9);
        QVERIFY(!ticks.Flip(9));
        QCOMPARE(ticks.Mask(), 1 << 9);
        QVERIFY(ticks.Flip(3));
        QVERIFY(ticks.Flip(9));
        QCOMPARE(ticks.Mask(), 1 << 3);
        // While a button changes the ticks the rule is off.
        QVERIFY(ticks.Flip(3, true));
        QCOMPARE(ticks.Mask(), 0);

        // Invert leaves Audition 3.0 when nothing is left.
        ticks.SelectAll();
        ticks.Invert();
        QCOMPARE(ticks.Mask(), 1 << 9);
        ticks.SetMask((1 << 1) | (1 << 2));
        ticks.Invert();
        QCOMPARE(ticks.Mask(), 1022 - 6);
    }

    void RowsTicksAndTotals() {
        SessionList list;
        QVERIFY(list.Add(Found("/s/", "a.ses", 1234567, 0)));
        QVERIFY(list.Add(Found("/s/", "b.ses", 1000, 0)));
        QVERIFY(!list.Add(Found("/s/", "a.ses", 5, 0)));  // the same file again
        QVERIFY(list.Add(Found("/s/sub/", "a.ses", 3, 0)));
        QCOMPARE(list.Count(), 3);
        QCOMPARE(list.TotalFilesText(), std::string("3"));
        QCOMPARE(list.TotalBytesText(), std::string("1,235,570"));
        QCOMPARE(list.Find("/s/sub/a.ses"), 2);

        // Flip, Invert, SelectAll and SelectNone are driven through the window's buttons (MainWindowTest).
        list.SetChecked(2, true);
        const std::vector<RunRow> rows = list.RunRows();
        QCOMPARE(rows.size(), std::size_t{3});
        QCOMPARE(rows[2].Folder + rows[2].File, std::string("/s/sub/a.ses"));
        QVERIFY(rows[2].Checked && !rows[0].Checked);

        list.Clear();
        QCOMPARE(list.TotalFilesText(), std::string("0"));
        QCOMPARE(list.TotalBytesText(), std::string("0"));
    }

    void CellTexts() {
        // The tests run with TZ=UTC.
        SessionList list;
        list.Add(Found("/s/", "a.ses", 2147483648LL, 1700000000, "Cool Edit Pro 2.1D"));
        QCOMPARE(list.CellText(0, kFolderColumn), std::string("/s/"));
        QCOMPARE(list.CellText(0, kFileColumn), std::string("a.ses"));
        QCOMPARE(list.CellText(0, kVersionColumn), std::string("Cool Edit Pro 2.1D"));
        QCOMPARE(list.CellText(0, kCreatedColumn), std::string("14/11/2023 22:13:20"));
        QCOMPARE(list.CellText(0, kBytesColumn), std::string("2,147,483,648"));
    }

    void SortingIsByValueAndTheSameHeaderReverses() {
        SessionList list;
        list.Add(Found("/b/", "c.ses", 900, 300));
        list.Add(Found("/a/", "A.ses", 10000, 100));
        list.Add(Found("/c/", "b.ses", 25, 200));
        QVERIFY(!list.Sorted());

        list.SortBy(kBytesColumn);  // another column: the order stays ascending
        QVERIFY(list.Sorted() && !list.Descending());
        QCOMPARE(Files(list), (std::vector<std::string>{"b.ses", "c.ses", "A.ses"}));
        list.SortBy(kBytesColumn);
        QVERIFY(list.Descending());
        QCOMPARE(Files(list), (std::vector<std::string>{"A.ses", "c.ses", "b.ses"}));
        list.SortBy(kCreatedColumn);  // keeps the descending order
        QCOMPARE(Files(list), (std::vector<std::string>{"c.ses", "b.ses", "A.ses"}));
        list.SortBy(kCreatedColumn);
        QCOMPARE(Files(list), (std::vector<std::string>{"A.ses", "b.ses", "c.ses"}));
        list.SortBy(kFileColumn);  // text, regardless of case
        QCOMPARE(Files(list), (std::vector<std::string>{"A.ses", "b.ses", "c.ses"}));
        list.SortBy(kFileColumn);
        QCOMPARE(Files(list), (std::vector<std::string>{"c.ses", "b.ses", "A.ses"}));

        // The sort column starts as "Folder", so its first click reverses.
        SessionList fresh;
        fresh.Add(Found("/a/", "1.ses", 1, 1));
        fresh.Add(Found("/b/", "2.ses", 1, 1));
        fresh.SortBy(kFolderColumn);
        QCOMPARE(Files(fresh), (std::vector<std::string>{"2.ses", "1.ses"}));

        // A scan lists in its own order until the next click.
        list.SetUnsorted();
        QVERIFY(!list.Sorted());
    }

    void TheModelShowsTheRows() {
        SessionList list;
        list.Add(Found("/s/", "a.ses", 4096, 0));
        FileListModel model(list);
        QCOMPARE(model.columnCount(), 5);
        QStringList headers;
        for (int i = 0; i < 5; ++i) headers << model.headerData(i, Qt::Horizontal, Qt::DisplayRole).toString();
        QCOMPARE(headers, (QStringList{"Folder", "File", "SES File Type", "Created", "Bytes"}));
        QCOMPARE(model.data(model.index(0, kBytesColumn), Qt::DisplayRole).toString(), QString("4,096"));
        QCOMPARE(model.data(model.index(0, kBytesColumn), Qt::TextAlignmentRole).value<Qt::Alignment>(),
                 Qt::AlignRight | Qt::AlignVCenter);
        QCOMPARE(model.data(model.index(0, kFolderColumn), Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Unchecked);
        list.Flip(0);
        QCOMPARE(model.data(model.index(0, kFolderColumn), Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Checked);
        QVERIFY(!model.data(model.index(0, kFileColumn), Qt::CheckStateRole).isValid());

        FileTypeTicks ticks;
        ticks.SetMask(1 << 9);
        FileTypesModel types(ticks);
        QCOMPARE(types.rowCount(), 9);
        QCOMPARE(types.data(types.index(0), Qt::DisplayRole).toString(), QString("Cool Edit 2000 1.0"));
        QCOMPARE(types.data(types.index(8), Qt::DisplayRole).toString(), QString("Audition 3.0"));
        QCOMPARE(types.data(types.index(8), Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Checked);
        QCOMPARE(types.data(types.index(0), Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Unchecked);
    }
};

QTEST_GUILESS_MAIN(ListLogicTest)
#include "ListLogicTest.moc"
