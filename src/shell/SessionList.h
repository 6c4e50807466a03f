// The rows behind the window's two lists, without any widget: the session
// files of the last scan with their ticks, sorting and totals, and the
// ticks of the nine writer versions with their mask and rules.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <unordered_set>
#include <vector>

#include "run/ConversionRun.h"
#include "run/Discovery.h"

namespace morvanta::shell {

// Columns of FileList, in position order.
enum FileColumn { kFolderColumn = 0, kFileColumn, kVersionColumn, kCreatedColumn, kBytesColumn, kFileColumnCount };

inline constexpr std::array<const char*, kFileColumnCount> kFileColumnKeys{"Folder", "File", "Version", "Created",
                                                                           "Bytes"};
inline constexpr std::array<const char*, kFileColumnCount> kFileColumnHeaders{"Folder", "File", "SES File Type",
                                                                              "Created", "Bytes"};

struct SessionRow {
    std::string Folder;  // with a closing separator
    std::string File;
    std::string Version;  // normalised
    std::int64_t Bytes = 0;
    std::time_t Created = 0;
    bool Checked = false;

    // The full path: a file is in the list once.
    std::string Key() const { return Folder + File; }
};

class SessionList {
public:
    void Clear();
    // Appends a row, unticked; false (and nothing added) when its key is
    // listed already.
    bool Add(const FoundSession& found);

    int Count() const { return static_cast<int>(rows_.size()); }
    const SessionRow& Row(int i) const { return rows_[static_cast<std::size_t>(i)]; }
    // The row of a key, or -1.
    int Find(const std::string& key) const;

    // What a cell shows: "Created" as "dd/mm/yyyy hh:mm:ss", "Bytes" as
    // "###,###,###,##0".
    std::string CellText(int row, int column) const;

    void SetChecked(int row, bool checked);
    void Flip(int row);
    void SelectAll();   // FileActionButton(0)
    void SelectNone();  // FileActionButton(1)
    void Invert();      // FileActionButton(2)
    int NumberChecked() const;

    // TotFilesLabel and TotBytesLabel.
    std::string TotalFilesText() const;
    std::string TotalBytesText() const;

    // A click on a column header: the same column again reverses the order,
    // another column keeps it. "Created" and "Bytes" sort by their values,
    // the others by their text regardless of case.
    void SortBy(int column);
    // A scan lists in the order the files were found; the sort column and
    // order are kept for the next click.
    void SetUnsorted() { sorted_ = false; }
    bool Sorted() const { return sorted_; }
    int SortKey() const { return sortKey_; }
    bool Descending() const { return descending_; }

    // The rows as the conversion run takes them, in list order.
    std::vector<RunRow> RunRows() const;

private:
    std::vector<SessionRow> rows_;
    std::unordered_set<std::string> keys_;
    int sortKey_ = kFolderColumn;
    bool descending_ = false;
    bool sorted_ = false;
};

// The ticks of SESFileTypes: row i (1 to 9) is bit i of the mask.
class FileTypeTicks {
public:
    static constexpr int kRows = static_cast<int>(kSesFileTypes.size());
    static constexpr int kAudition30Row = 9;

    bool Ticked(int row) const { return ticks_[static_cast<std::size_t>(row - 1)]; }
    void SetTicked(int row, bool ticked) { ticks_[static_cast<std::size_t>(row - 1)] = ticked; }
    bool AnyTicked() const;

    int Mask() const;
    // A stored mask without any row ticked would list nothing and could not
    // be left by a click: it gives every row.
    void SetMask(int mask);

    // A click on a row's tick: false when that took the last tick away, in
    // which case the tick is put back ("You must have at least one item
    // checked."). While a button changes the ticks the rule is off.
    bool Flip(int row, bool typeChangeInProgress = false);

    void SelectAll();    // ResetlButton(0)
    void SelectAA3();    // ResetlButton(1): only "Audition 3.0"
    void Invert();       // ResetlButton(2): "Audition 3.0" when none is left

private:
    std::array<bool, kSesFileTypes.size()> ticks_{};
};

}  // namespace morvanta::shell
