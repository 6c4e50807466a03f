// Dirtree: the folder tree of the window. It shows the file system root and
// the user's home folder, reads a folder's subfolders when it is expanded,
// and tells its owner of clicks, expands and collapses by folder key.
#pragma once

#include <QWidget>

class QModelIndex;
class QTreeView;

namespace morvanta::shell {

class DirtreeModel;

class Dirtree : public QWidget {
    Q_OBJECT
public:
    explicit Dirtree(QWidget* parent = nullptr);

    // Rebuilds the tree with these top-level folders (FreshenTree).
    void SetRoots(const QStringList& roots);

    // The key of the last clicked node, always with a closing separator.
    QString Path() const { return path_; }

    bool SelectOnExpand() const { return selectOnExpand_; }
    void SetSelectOnExpand(bool on) { selectOnExpand_ = on; }

    // The key of the selected node, or empty.
    QString SelectedKey() const;

    // Opens the tree down to `folder`, or to the nearest folder above it that
    // the tree shows, and selects that node without a NodeClick. Returns its
    // key, or empty when the tree shows none of them.
    QString GoTo(const QString& folder);

    QTreeView* View() const { return view_; }
    DirtreeModel* Model() const { return model_; }

signals:
    void NodeClick(const QString& key);
    void Expand(const QString& key);
    void Collapse(const QString& key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnClicked(const QModelIndex& index);
    void OnExpanded(const QModelIndex& index);
    void OnCollapsed(const QModelIndex& index);

    DirtreeModel* model_;
    QTreeView* view_;
    QString path_;
    bool selectOnExpand_ = false;
    // After GoTo the selected node is kept in sight while the folders on the
    // way fill in, until the user does something.
    bool reveal_ = false;
};

}  // namespace morvanta::shell
