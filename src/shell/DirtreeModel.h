// The folders of the tree: a model over QFileSystemModel (directories only,
// no hidden or dot folders) that shows several roots side by side (the file
// system root and the user's home folder) and gives a folder a plus sign
// only when it has a subfolder. Children are read when a folder is first
// expanded.
#pragma once

#include <QAbstractItemModel>
#include <QFileSystemModel>
#include <QHash>
#include <QPersistentModelIndex>

#include <memory>
#include <vector>

namespace morvanta::shell {

class DirtreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    // The key of a node: its full path, without a closing separator except
    // for the file system root.
    static constexpr int KeyRole = Qt::UserRole + 1;

    explicit DirtreeModel(QObject* parent = nullptr);
    ~DirtreeModel() override;

    // The top-level folders, each shown with its own text.
    void SetRoots(const QStringList& paths);
    QStringList Roots() const;

    // The node of a folder below one of the roots (the first root that holds
    // it), creating the nodes on the way; invalid when no root holds it or
    // a folder on the way is not shown.
    QModelIndex IndexOfPath(const QString& path);
    QString Key(const QModelIndex& index) const { return data(index, KeyRole).toString(); }

    // The tree view tells the model which folders are open, for their
    // pictures; closing one forgets what was known of its subfolders.
    void SetExpanded(const QModelIndex& index, bool expanded);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

private:
    struct Node;

    Node* NodeOf(const QModelIndex& index) const;
    QModelIndex IndexOf(Node* node) const;
    int RowOf(const Node* node) const;
    void EnsureChildren(Node* node) const;
    std::unique_ptr<Node> MakeNode(Node* parent, int root, const QModelIndex& source) const;
    void Forget(Node* node) const;
    QList<Node*> NodesOf(const QModelIndex& source) const;

    void OnRowsInserted(const QModelIndex& parent, int first, int last);
    void OnRowsAboutToBeRemoved(const QModelIndex& parent, int first, int last);
    void OnDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void OnLayoutAboutToBeChanged();
    void OnLayoutChanged();
    void Rebuild();

    QFileSystemModel* source_;
    QStringList rootPaths_;
    std::vector<std::unique_ptr<Node>> roots_;
    // Source node (its internal pointer) to the nodes that show it.
    mutable QHash<const void*, QList<Node*>> bySource_;
    QModelIndexList layoutSaved_;
};

}  // namespace morvanta::shell
