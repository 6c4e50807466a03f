// The folder tree control.
#include "shell/Dirtree.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

#include "shell/DirtreeModel.h"

namespace morvanta::shell {
namespace {

QString WithClosingSeparator(const QString& key) {
    return key.endsWith(QLatin1Char('/')) ? key : key + QLatin1Char('/');
}

}  // namespace

Dirtree::Dirtree(QWidget* parent) : QWidget(parent), model_(new DirtreeModel(this)), view_(new QTreeView(this)) {
    view_->setObjectName("TreeView1");
    view_->setModel(model_);
    view_->setHeaderHidden(true);
    view_->setUniformRowHeights(true);
    view_->setSelectionMode(QAbstractItemView::SingleSelection);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setAnimated(false);
    view_->installEventFilter(this);
    setFocusProxy(view_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);

    view_->viewport()->installEventFilter(this);
    const auto keepInSight = [this] {
        if (reveal_) QTimer::singleShot(0, this, [this] {
                if (reveal_ && view_->currentIndex().isValid()) view_->scrollTo(view_->currentIndex(), QAbstractItemView::PositionAtCenter);
            });
    };
    connect(model_, &QAbstractItemModel::rowsInserted, this, keepInSight);
    connect(model_, &QAbstractItemModel::layoutChanged, this, keepInSight);
    connect(view_, &QTreeView::clicked, this, &Dirtree::OnClicked);
    connect(view_, &QTreeView::expanded, this, &Dirtree::OnExpanded);
    connect(view_, &QTreeView::collapsed, this, &Dirtree::OnCollapsed);
}

void Dirtree::SetRoots(const QStringList& roots) { model_->SetRoots(roots); }

QString Dirtree::SelectedKey() const {
    const QModelIndex current = view_->currentIndex();
    return current.isValid() && view_->selectionModel()->isSelected(current) ? model_->Key(current) : QString();
}

QString Dirtree::GoTo(const QString& folder) {
    QModelIndex found;
    for (QString at = QDir::cleanPath(folder); !at.isEmpty();) {
        if (QFileInfo(at).isDir()) found = model_->IndexOfPath(at);
        if (found.isValid()) break;
        const QString up = QFileInfo(at).path();
        if (up == at) break;
        at = up;
    }
    if (!found.isValid()) return {};
    QList<QModelIndex> chain;
    for (QModelIndex at = found; at.isValid(); at = at.parent()) chain.prepend(at);
    for (const QModelIndex& step : chain) view_->expand(step);
    view_->setCurrentIndex(found);
    view_->scrollTo(found, QAbstractItemView::PositionAtCenter);
    reveal_ = true;
    return model_->Key(found);
}

bool Dirtree::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::MouseButtonPress || type == QEvent::Wheel || type == QEvent::KeyPress) reveal_ = false;
    // Enter on a node is a click on it, for the keyboard.
    if (watched == view_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && view_->currentIndex().isValid()) {
            OnClicked(view_->currentIndex());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void Dirtree::OnClicked(const QModelIndex& index) {
    if (!index.isValid()) return;
    const QString key = model_->Key(index);
    path_ = WithClosingSeparator(key);
    emit NodeClick(key);
}

void Dirtree::OnExpanded(const QModelIndex& index) {
    model_->SetExpanded(index, true);
    emit Expand(model_->Key(index));
    if (selectOnExpand_) view_->setCurrentIndex(index);
}

void Dirtree::OnCollapsed(const QModelIndex& index) {
    model_->SetExpanded(index, false);
    emit Collapse(model_->Key(index));
    // The node that closed is selected as well, so a hidden selection never
    // stands for the folder.
    if (selectOnExpand_) view_->setCurrentIndex(index);
}

}  // namespace morvanta::shell
