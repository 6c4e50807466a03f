// The rows behind the window's two lists.
#include "shell/SessionList.h"

#include <algorithm>
#include <cctype>

namespace morvanta::shell {
namespace {

// Text order regardless of case, as the list control sorts.
int CompareText(const std::string& a, const std::string& b) {
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const int ca = std::tolower(static_cast<unsigned char>(a[i]));
        const int cb = std::tolower(static_cast<unsigned char>(b[i]));
        if (ca != cb) return ca < cb ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

int CompareRows(const SessionRow& a, const SessionRow& b, int column) {
    switch (column) {
        case kFileColumn: return CompareText(a.File, b.File);
        case kVersionColumn: return CompareText(a.Version, b.Version);
        case kCreatedColumn: return a.Created == b.Created ? 0 : (a.Created < b.Created ? -1 : 1);
        case kBytesColumn: return a.Bytes == b.Bytes ? 0 : (a.Bytes < b.Bytes ? -1 : 1);
        default: return CompareText(a.Folder, b.Folder);
    }
}

}  // namespace

void SessionList::Clear() {
    rows_.clear();
    keys_.clear();
    sorted_ = false;
}

bool SessionList::Add(const FoundSession& found) {
    SessionRow row{found.Folder, found.File, found.Version, found.Bytes, found.Created, false};
    if (!keys_.insert(row.Key()).second) return false;
    rows_.push_back(std::move(row));
    return true;
}

int SessionList::Find(const std::string& key) const {
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].Key() == key) return static_cast<int>(i);
    return -1;
}

std::string SessionList::CellText(int row, int column) const {
    const SessionRow& r = Row(row);
    switch (column) {
        case kFolderColumn: return r.Folder;
        case kFileColumn: return r.File;
        case kVersionColumn: return r.Version;
        case kCreatedColumn: return FormatCreated(r.Created);
        case kBytesColumn: return FormatBytes(static_cast<double>(r.Bytes));
        default: return {};
    }
}

void SessionList::SetChecked(int row, bool checked) { rows_[static_cast<std::size_t>(row)].Checked = checked; }

void SessionList::Flip(int row) { SetChecked(row, !Row(row).Checked); }

void SessionList::SelectAll() {
    for (SessionRow& row : rows_) row.Checked = true;
}

void SessionList::SelectNone() {
    for (SessionRow& row : rows_) row.Checked = false;
}

void SessionList::Invert() {
    for (SessionRow& row : rows_) row.Checked = !row.Checked;
}

int SessionList::NumberChecked() const {
    return static_cast<int>(std::count_if(rows_.begin(), rows_.end(), [](const SessionRow& r) { return r.Checked; }));
}

std::string SessionList::TotalFilesText() const { return FormatBytes(static_cast<double>(rows_.size())); }

std::string SessionList::TotalBytesText() const {
    double total = 0;
    for (const SessionRow& row : rows_) total += static_cast<double>(row.Bytes);
    return FormatBytes(total);
}

void SessionList::SortBy(int column) {
    if (column < 0 || column >= kFileColumnCount) return;
    if (sortKey_ == column) descending_ = !descending_;
    else sortKey_ = column;
    sorted_ = true;
    std::stable_sort(rows_.begin(), rows_.end(), [this](const SessionRow& a, const SessionRow& b) {
        const int order = CompareRows(a, b, sortKey_);
        return descending_ ? order > 0 : order < 0;
    });
}

std::vector<RunRow> SessionList::RunRows() const {
    std::vector<RunRow> rows;
    rows.reserve(rows_.size());
    for (const SessionRow& row : rows_) rows.push_back({row.Folder, row.File, row.Checked});
    return rows;
}

bool FileTypeTicks::AnyTicked() const { return std::any_of(ticks_.begin(), ticks_.end(), [](bool t) { return t; }); }

int FileTypeTicks::Mask() const {
    int mask = 0;
    for (int row = 1; row <= kRows; ++row)
        if (Ticked(row)) mask += 1 << row;
    return mask;
}

void FileTypeTicks::SetMask(int mask) {
    if ((mask & kAllFileTypesMask) == 0) mask = kAllFileTypesMask;
    for (int row = 1; row <= kRows; ++row) SetTicked(row, (mask & (1 << row)) != 0);
}

bool FileTypeTicks::Flip(int row, bool typeChangeInProgress) {
    SetTicked(row, !Ticked(row));
    if (typeChangeInProgress || AnyTicked()) return true;
    SetTicked(row, true);
    return false;
}

void FileTypeTicks::SelectAll() { ticks_.fill(true); }

void FileTypeTicks::SelectAA3() {
    ticks_.fill(false);
    SetTicked(kAudition30Row, true);
}

void FileTypeTicks::Invert() {
    for (bool& tick : ticks_) tick = !tick;
    if (!AnyTicked()) SetTicked(kAudition30Row, true);
}

}  // namespace morvanta::shell
