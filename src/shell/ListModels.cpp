// Qt models over the plain lists, and the view that ticks on a click.
#include "shell/ListModels.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace morvanta::shell {

int FileListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : list_.Count(); }

int FileListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kFileColumnCount; }

QVariant FileListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= list_.Count()) return {};
    switch (role) {
        case Qt::DisplayRole: return QString::fromStdString(list_.CellText(index.row(), index.column()));
        case Qt::ToolTipRole:
            return index.column() == kFolderColumn || index.column() == kFileColumn
                       ? QVariant(QString::fromStdString(list_.Row(index.row()).Key()))
                       : QVariant();
        case Qt::CheckStateRole:
            if (index.column() != kFolderColumn) return {};
            return list_.Row(index.row()).Checked ? Qt::Checked : Qt::Unchecked;
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(index.column() == kBytesColumn ? Qt::AlignRight | Qt::AlignVCenter
                                                                      : Qt::AlignLeft | Qt::AlignVCenter);
        default: return {};
    }
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= kFileColumnCount) return {};
    if (role == Qt::DisplayRole) return QString::fromLatin1(kFileColumnHeaders[static_cast<std::size_t>(section)]);
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(section == kBytesColumn ? Qt::AlignRight | Qt::AlignVCenter
                                                           : Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags FileListModel::flags(const QModelIndex& index) const {
    // Not user-checkable: the view flips a tick on any click of the row.
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

void FileListModel::Reload() {
    beginResetModel();
    endResetModel();
}

void FileListModel::RowsAppended(int first, int last) {
    beginInsertRows({}, first, last);
    endInsertRows();
}

void FileListModel::TicksChanged(int first, int last) {
    if (first > last || list_.Count() == 0) return;
    emit dataChanged(index(first, 0), index(last, kFileColumnCount - 1), {Qt::CheckStateRole});
}

int FileTypesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : FileTypeTicks::kRows;
}

QVariant FileTypesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role == Qt::DisplayRole)
        return QString::fromLatin1(kSesFileTypes[static_cast<std::size_t>(index.row())].data(),
                                   static_cast<qsizetype>(kSesFileTypes[static_cast<std::size_t>(index.row())].size()));
    if (role == Qt::CheckStateRole) return ticks_.Ticked(index.row() + 1) ? Qt::Checked : Qt::Unchecked;
    return {};
}

Qt::ItemFlags FileTypesModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

void FileTypesModel::TicksChanged() {
    emit dataChanged(index(0), index(FileTypeTicks::kRows - 1), {Qt::CheckStateRole});
}

TickListView::TickListView(QWidget* parent) : QTreeView(parent) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
}

void TickListView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex at = indexAt(event->position().toPoint());
    pressedRow_ = event->button() == Qt::LeftButton && at.isValid() ? at.row() : -1;
    QTreeView::mousePressEvent(event);
}

void TickListView::mouseDoubleClickEvent(QMouseEvent* event) {
    // The second click of a double click flips again, as any click does.
    const QModelIndex at = indexAt(event->position().toPoint());
    pressedRow_ = event->button() == Qt::LeftButton && at.isValid() ? at.row() : -1;
    QTreeView::mouseDoubleClickEvent(event);
}

void TickListView::mouseReleaseEvent(QMouseEvent* event) {
    const QModelIndex at = indexAt(event->position().toPoint());
    const int row = pressedRow_;
    pressedRow_ = -1;
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && at.isValid() && at.row() == row) emit RowClicked(row);
}

void TickListView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && currentIndex().isValid()) {
        emit RowClicked(currentIndex().row());
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

}  // namespace morvanta::shell
