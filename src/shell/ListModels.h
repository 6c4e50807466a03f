// Qt's view of the two plain lists: FileList with its five columns and
// SESFileTypes with its nine rows, each row with a tick box, and the view
// in which a click anywhere on a row flips its tick.
#pragma once

#include <QAbstractListModel>
#include <QAbstractTableModel>
#include <QTreeView>

#include "shell/SessionList.h"

namespace morvanta::shell {

class FileListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit FileListModel(SessionList& list, QObject* parent = nullptr) : QAbstractTableModel(parent), list_(list) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // The list changed under the model: everything is shown again.
    void Reload();
    // Rows were appended at the end of the list.
    void RowsAppended(int first, int last);
    // Ticks changed in the rows first to last.
    void TicksChanged(int first, int last);

private:
    SessionList& list_;
};

class FileTypesModel : public QAbstractListModel {
    Q_OBJECT
public:
    explicit FileTypesModel(FileTypeTicks& ticks, QObject* parent = nullptr)
        : QAbstractListModel(parent), ticks_(ticks) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    void TicksChanged();

private:
    FileTypeTicks& ticks_;
};

// A list with tick boxes: a click on a row, on its box or beside it, and
// the space bar on the current row, report the row; the owner flips it.
class TickListView : public QTreeView {
    Q_OBJECT
public:
    explicit TickListView(QWidget* parent = nullptr);

signals:
    void RowClicked(int row);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int pressedRow_ = -1;
};

}  // namespace morvanta::shell
