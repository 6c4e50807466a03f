// Several roots over one QFileSystemModel. Each shown folder is a node of
// our own that mirrors the children of its source index one to one, so that
// a folder under two roots (home lies below "/") has two nodes, and rows
// stay consistent while the file system model fills in the background.
#include "shell/DirtreeModel.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QStorageInfo>
#include <QStyle>

#include <algorithm>
#include <climits>

namespace morvanta::shell {

struct DirtreeModel::Node {
    Node* parent = nullptr;
    int root = 0;
    QPersistentModelIndex source;
    std::vector<std::unique_ptr<Node>> children;
    bool childrenBuilt = false;
    int subfolders = -1;  // -1 not known yet, else 0 or 1
    bool expanded = false;
};

DirtreeModel::DirtreeModel(QObject* parent) : QAbstractItemModel(parent), source_(new QFileSystemModel(this)) {
    // Directories only; without QDir::Hidden hidden (dot) folders stay out.
    source_->setFilter(QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot);
    source_->setReadOnly(true);
    source_->setOption(QFileSystemModel::DontUseCustomDirectoryIcons);
    source_->setRootPath(QDir::rootPath());
    source_->sort(0, Qt::AscendingOrder);

    connect(source_, &QAbstractItemModel::rowsInserted, this, &DirtreeModel::OnRowsInserted);
    connect(source_, &QAbstractItemModel::rowsAboutToBeRemoved, this, &DirtreeModel::OnRowsAboutToBeRemoved);
    connect(source_, &QAbstractItemModel::dataChanged, this, &DirtreeModel::OnDataChanged);
    connect(source_, &QAbstractItemModel::layoutAboutToBeChanged, this, &DirtreeModel::OnLayoutAboutToBeChanged);
    connect(source_, &QAbstractItemModel::layoutChanged, this, &DirtreeModel::OnLayoutChanged);
    // Moves and resets are rare: everything is read again.
    connect(source_, &QAbstractItemModel::rowsMoved, this, &DirtreeModel::Rebuild);
    connect(source_, &QAbstractItemModel::modelReset, this, &DirtreeModel::Rebuild);
}

DirtreeModel::~DirtreeModel() = default;

void DirtreeModel::SetRoots(const QStringList& paths) {
    rootPaths_.clear();
    for (const QString& path : paths) {
        const QString clean = QDir::cleanPath(path);
        if (!rootPaths_.contains(clean) && QFileInfo(clean).isDir()) rootPaths_.push_back(clean);
    }
    Rebuild();
}

QStringList DirtreeModel::Roots() const { return rootPaths_; }

void DirtreeModel::Rebuild() {
    beginResetModel();
    roots_.clear();
    bySource_.clear();
    for (int i = 0; i < rootPaths_.size(); ++i) {
        const QModelIndex source = source_->index(rootPaths_[i]);
        if (source.isValid()) roots_.push_back(MakeNode(nullptr, i, source));
    }
    endResetModel();
}

std::unique_ptr<DirtreeModel::Node> DirtreeModel::MakeNode(Node* parent, int root, const QModelIndex& source) const {
    auto node = std::make_unique<Node>();
    node->parent = parent;
    node->root = root;
    node->source = source.siblingAtColumn(0);
    bySource_[source.internalPointer()].push_back(node.get());
    return node;
}

void DirtreeModel::Forget(Node* node) const {
    for (auto& child : node->children) Forget(child.get());
    auto it = bySource_.find(node->source.internalPointer());
    if (it == bySource_.end()) return;
    it->removeAll(node);
    if (it->isEmpty()) bySource_.erase(it);
}

QList<DirtreeModel::Node*> DirtreeModel::NodesOf(const QModelIndex& source) const {
    if (!source.isValid()) return {};
    return bySource_.value(source.internalPointer());
}

void DirtreeModel::EnsureChildren(Node* node) const {
    if (node->childrenBuilt) return;
    node->childrenBuilt = true;
    const int rows = node->source.isValid() ? source_->rowCount(node->source) : 0;
    for (int row = 0; row < rows; ++row)
        node->children.push_back(MakeNode(node, node->root, source_->index(row, 0, node->source)));
}

DirtreeModel::Node* DirtreeModel::NodeOf(const QModelIndex& index) const {
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : nullptr;
}

int DirtreeModel::RowOf(const Node* node) const {
    if (!node->parent) {
        for (std::size_t i = 0; i < roots_.size(); ++i)
            if (roots_[i].get() == node) return static_cast<int>(i);
        return -1;
    }
    const auto& siblings = node->parent->children;
    // The source row is right unless the source has moved on ahead of us.
    const int hint = node->source.row();
    if (hint >= 0 && static_cast<std::size_t>(hint) < siblings.size() && siblings[static_cast<std::size_t>(hint)].get() == node)
        return hint;
    for (std::size_t i = 0; i < siblings.size(); ++i)
        if (siblings[i].get() == node) return static_cast<int>(i);
    return -1;
}

QModelIndex DirtreeModel::IndexOf(Node* node) const {
    return node ? createIndex(RowOf(node), 0, node) : QModelIndex();
}

QModelIndex DirtreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0) return {};
    if (!parent.isValid()) {
        if (static_cast<std::size_t>(row) >= roots_.size()) return {};
        return createIndex(row, 0, roots_[static_cast<std::size_t>(row)].get());
    }
    Node* node = NodeOf(parent);
    EnsureChildren(node);
    if (static_cast<std::size_t>(row) >= node->children.size()) return {};
    return createIndex(row, 0, node->children[static_cast<std::size_t>(row)].get());
}

QModelIndex DirtreeModel::parent(const QModelIndex& child) const {
    const Node* node = NodeOf(child);
    return node && node->parent ? IndexOf(node->parent) : QModelIndex();
}

int DirtreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return static_cast<int>(roots_.size());
    Node* node = NodeOf(parent);
    EnsureChildren(node);
    return static_cast<int>(node->children.size());
}

int DirtreeModel::columnCount(const QModelIndex&) const { return 1; }

bool DirtreeModel::hasChildren(const QModelIndex& parent) const {
    if (!parent.isValid()) return !roots_.empty();
    Node* node = NodeOf(parent);
    if (node->childrenBuilt && !node->children.empty()) return true;
    if (node->subfolders < 0) {
        // One short look: the first subfolder that is not hidden decides.
        node->subfolders = 0;
        QDirIterator it(Key(parent), QDir::Dirs | QDir::NoDotAndDotDot);
        while (it.hasNext()) {
            it.next();
            if (!it.fileName().startsWith(QLatin1Char('.'))) {
                node->subfolders = 1;
                break;
            }
        }
    }
    return node->subfolders == 1;
}

QVariant DirtreeModel::data(const QModelIndex& index, int role) const {
    const Node* node = NodeOf(index);
    if (!node) return {};
    const bool isRoot = node->parent == nullptr;
    const QString key = isRoot ? rootPaths_[node->root] : source_->filePath(node->source);
    switch (role) {
        case KeyRole:
        case Qt::ToolTipRole: return key;
        case Qt::DisplayRole: {
            if (!isRoot) return node->source.data(Qt::DisplayRole);
            // A root shows its path and, where it has one, its label.
            if (key == QDir::homePath()) return key + QStringLiteral(" [Home]");
            const QStorageInfo volume(key);
            if (volume.rootPath() == key && !volume.name().isEmpty())
                return key + QStringLiteral(" [") + volume.name() + QLatin1Char(']');
            return key;
        }
        case Qt::DecorationRole: {
            QStyle* style = QApplication::style();
            if (isRoot)
                return style->standardIcon(key == QDir::homePath() ? QStyle::SP_DirHomeIcon : QStyle::SP_DriveHDIcon);
            return style->standardIcon(node->expanded ? QStyle::SP_DirOpenIcon : QStyle::SP_DirClosedIcon);
        }
        default: return {};
    }
}

Qt::ItemFlags DirtreeModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

bool DirtreeModel::canFetchMore(const QModelIndex& parent) const {
    const Node* node = NodeOf(parent);
    return node && node->source.isValid() && source_->canFetchMore(node->source);
}

void DirtreeModel::fetchMore(const QModelIndex& parent) {
    const Node* node = NodeOf(parent);
    if (node && node->source.isValid()) source_->fetchMore(node->source);
}

void DirtreeModel::SetExpanded(const QModelIndex& index, bool expanded) {
    Node* node = NodeOf(index);
    if (!node) return;
    node->expanded = expanded;
    // What a closed folder knew of its subfolders' subfolders is read again
    // when it opens next.
    if (!expanded)
        for (auto& child : node->children) child->subfolders = -1;
    emit dataChanged(index, index, {Qt::DecorationRole});
}

QModelIndex DirtreeModel::IndexOfPath(const QString& path) {
    const QString clean = QDir::cleanPath(path);
    // The root nearest to the folder holds it.
    int best = -1;
    for (std::size_t i = 0; i < roots_.size(); ++i) {
        const QString& root = rootPaths_[roots_[i]->root];
        const bool holds = clean == root || clean.startsWith(root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/'));
        if (holds && (best < 0 || root.size() > rootPaths_[roots_[static_cast<std::size_t>(best)]->root].size()))
            best = static_cast<int>(i);
    }
    if (best < 0) return {};
    Node* node = roots_[static_cast<std::size_t>(best)].get();
    const QModelIndex target = source_->index(clean);
    if (!target.isValid()) return {};

    QList<QModelIndex> chain;
    for (QModelIndex at = target; at.isValid() && at != node->source; at = at.parent()) chain.prepend(at);
    for (const QModelIndex& step : chain) {
        EnsureChildren(node);
        Node* next = nullptr;
        for (auto& child : node->children)
            if (child->source == step) next = child.get();
        if (!next) return {};
        node = next;
    }
    return IndexOf(node);
}

void DirtreeModel::OnRowsInserted(const QModelIndex& parent, int first, int last) {
    for (Node* node : NodesOf(parent)) {
        if (!node->childrenBuilt) continue;
        if (static_cast<std::size_t>(first) > node->children.size()) continue;
        beginInsertRows(IndexOf(node), first, last);
        std::vector<std::unique_ptr<Node>> added;
        for (int row = first; row <= last; ++row)
            added.push_back(MakeNode(node, node->root, source_->index(row, 0, parent)));
        node->children.insert(node->children.begin() + first, std::make_move_iterator(added.begin()),
                              std::make_move_iterator(added.end()));
        endInsertRows();
    }
}

void DirtreeModel::OnRowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
    for (Node* node : NodesOf(parent)) {
        if (!node->childrenBuilt || static_cast<std::size_t>(last) >= node->children.size()) continue;
        beginRemoveRows(IndexOf(node), first, last);
        for (int row = first; row <= last; ++row) Forget(node->children[static_cast<std::size_t>(row)].get());
        node->children.erase(node->children.begin() + first, node->children.begin() + last + 1);
        endRemoveRows();
    }
}

void DirtreeModel::OnDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight) {
    if (topLeft.column() != 0) return;
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
        for (Node* node : NodesOf(source_->index(row, 0, topLeft.parent()))) {
            const QModelIndex at = IndexOf(node);
            emit dataChanged(at, at);
        }
}

void DirtreeModel::OnLayoutAboutToBeChanged() {
    emit layoutAboutToBeChanged();
    layoutSaved_ = persistentIndexList();
}

void DirtreeModel::OnLayoutChanged() {
    // The file system model has sorted: put each built node's children in
    // the new order of their sources.
    std::vector<Node*> pending;
    for (auto& root : roots_) pending.push_back(root.get());
    while (!pending.empty()) {
        Node* node = pending.back();
        pending.pop_back();
        std::stable_sort(node->children.begin(), node->children.end(), [](const auto& a, const auto& b) {
            const int ra = a->source.isValid() ? a->source.row() : INT_MAX;
            const int rb = b->source.isValid() ? b->source.row() : INT_MAX;
            return ra < rb;
        });
        for (auto& child : node->children) pending.push_back(child.get());
    }
    for (const QModelIndex& old : layoutSaved_) {
        Node* node = NodeOf(old);
        changePersistentIndex(old, createIndex(RowOf(node), old.column(), node));
    }
    layoutSaved_.clear();
    emit layoutChanged();
}

}  // namespace morvanta::shell
