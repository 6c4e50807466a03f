// The folder tree: directories only, no dot folders, plus signs only where
// a folder has subfolders, Path with its closing separator, the events,
// selecting on expand, several roots, and reading again after a collapse.
#include <QtTest>

#include <QTreeView>

#include "shell/Dirtree.h"
#include "shell/DirtreeModel.h"

using namespace morvanta::shell;

namespace {

QStringList Names(const DirtreeModel& model, const QModelIndex& parent) {
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row)
        names << model.data(model.index(row, 0, parent), Qt::DisplayRole).toString();
    return names;
}

}  // namespace

class DirtreeTest : public QObject {
    Q_OBJECT
private:
    QTemporaryDir dir_;
    QString Path(const QString& relative) const { return dir_.filePath(relative); }

private slots:
    void initTestCase() {
        // a/x: a subfolder; b: only a file; c: only a dot folder; .dot: hidden.
        for (const char* folder : {"a/x", "b", "c/.inner", ".dot/y"}) QVERIFY(QDir().mkpath(Path(folder)));
        QFile file(Path("b/take.ses"));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    void FoldersPlusSignsAndHiddenOnes() {
        Dirtree tree;
        tree.SetRoots({dir_.path()});
        tree.show();  // a tree view reads children as it lays them out
        DirtreeModel& model = *tree.Model();
        QCOMPARE(model.rowCount(), 1);
        const QModelIndex root = model.index(0, 0);
        QCOMPARE(model.Key(root), QDir::cleanPath(dir_.path()));
        tree.View()->expand(root);
        QTRY_COMPARE(Names(model, root), (QStringList{"a", "b", "c"}));
        QVERIFY(model.hasChildren(model.index(0, 0, root)));
        QVERIFY(!model.hasChildren(model.index(1, 0, root)));
        QVERIFY(!model.hasChildren(model.index(2, 0, root)));
        QCOMPARE(model.Key(model.index(0, 0, root)), Path("a"));
    }

    void ClicksExpandsAndCollapses() {
        Dirtree tree;
        tree.SetSelectOnExpand(true);
        tree.SetRoots({dir_.path()});
        tree.show();
        QSignalSpy clicks(&tree, &Dirtree::NodeClick);
        QSignalSpy expands(&tree, &Dirtree::Expand);
        QSignalSpy collapses(&tree, &Dirtree::Collapse);

        QCOMPARE(tree.GoTo(Path("a/x/missing")), Path("a/x"));
        QCOMPARE(tree.SelectedKey(), Path("a/x"));
        QCOMPARE(clicks.count(), 0);  // going to a folder is no click
        QVERIFY(expands.count() >= 2);
        QCOMPARE(expands.last().at(0).toString(), Path("a/x"));

        const QModelIndex a = tree.Model()->IndexOfPath(Path("a"));
        tree.View()->collapse(a);
        QCOMPARE(collapses.count(), 1);
        QCOMPARE(collapses.at(0).at(0).toString(), Path("a"));
        QCOMPARE(tree.SelectedKey(), Path("a"));

        tree.View()->expand(a);
        QCOMPARE(tree.SelectedKey(), Path("a"));

        const QRect at = tree.View()->visualRect(tree.Model()->IndexOfPath(Path("b")));
        QTest::mouseClick(tree.View()->viewport(), Qt::LeftButton, {}, at.center());
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(clicks.at(0).at(0).toString(), Path("b"));
        QCOMPARE(tree.Path(), Path("b") + "/");
        QCOMPARE(tree.SelectedKey(), Path("b"));

        // Enter is a click for the keyboard.
        QTest::keyClick(tree.View(), Qt::Key_Return);
        QCOMPARE(clicks.count(), 2);
    }

    void TheNearestRootHoldsAFolder() {
        Dirtree tree;
        tree.SetRoots({dir_.path(), Path("a"), Path("no such folder")});
        DirtreeModel& model = *tree.Model();
        QCOMPARE(model.Roots(), (QStringList{QDir::cleanPath(dir_.path()), Path("a")}));
        const QModelIndex x = model.IndexOfPath(Path("a/x"));
        QVERIFY(x.isValid());
        QCOMPARE(model.parent(x), model.index(1, 0));
        QVERIFY(!model.IndexOfPath(QStringLiteral("/")).isValid());
    }

    void ASecondExpandShowsWhatHasChanged() {
        Dirtree tree;
        tree.SetRoots({Path("b")});
        tree.show();
        DirtreeModel& model = *tree.Model();
        const QModelIndex root = model.index(0, 0);
        QVERIFY(!model.hasChildren(root));
        tree.View()->expand(root);
        tree.View()->collapse(root);
        QVERIFY(QDir().mkpath(Path("b/new")));
        tree.View()->expand(root);
        QTRY_COMPARE(Names(model, root), QStringList{"new"});
        QVERIFY(model.hasChildren(root));
        QVERIFY(QDir(Path("b/new")).removeRecursively());
    }
};

QTEST_MAIN(DirtreeTest)
#include "DirtreeTest.moc"
