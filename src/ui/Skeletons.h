#pragma once
// What list screens and entry screens share beyond the entry conventions.
//
// A list screen reads its rows into its row array, shows a line a row, and
// opens its entry screen modally with a mode and the row the user chose;
// after the entry screen closes it reads the list again and puts the cursor
// on the row saved last. An entry screen is opened with its mode and row,
// sets its two main buttons by the mode, and locks its fields when it only
// shows or deletes.
#include "base/Mode.h"

#include <QString>
#include <QVector>

#include <functional>

class QLineEdit;
class QPushButton;
class QTreeWidget;
class Form;

namespace ListScreen {
// The main buttons of a list screen, cmdMENU(0) to (6): close, add, change,
// show, delete, copy (a new row from the chosen one) and print, which stands
// switched off: no list is printed. open(mode, withRow) opens the entry
// screen, with the chosen row or without one.
void wireButtons(Form *list, const QVector<QPushButton *> &buttons, std::function<void(Mode, bool withRow)> open);
// The date filters of a list, checked before its statement runs: a field
// whose text is no date (years 1000 to 9999) shows "日付を指定してください。"
// with the exclamation mark and takes the focus, and the answer is false. An
// empty field passes. A year field stands for the 1 January of that year.
bool filterDatesReadable(const QVector<QLineEdit *> &dates, QLineEdit *year = nullptr);
// The row of the list's chosen line; -1 when none is chosen.
int chosenRow(const QTreeWidget *list);
// Makes a row the chosen line, selected and in view; -1 chooses none.
void chooseRow(QTreeWidget *list, int row);
}

namespace EntryScreen {
// The two main buttons by the mode: the closing one says "ｷｬﾝｾﾙ", or
// "閉じる" when the screen only shows; the confirming one says its caption
// ("登録"), "削除" when the screen deletes, and is hidden when it only shows.
// Showing and deleting lock the record's fields (lockRecordFields).
void setMode(Form *screen, QPushButton *closeButton, QPushButton *confirmButton, Mode mode,
             const QString &confirmCaption = QStringLiteral("登録"));
// Runs the save of the screen's record. When another computer has saved the
// record since the screen read it (the error RecordChanged), says so and
// asks whether to read it again: Yes runs reload, No keeps what the screen
// shows. Any other error passes on to the screen's trap. True when saved.
bool saveOrReload(const std::function<void()> &save, const std::function<void()> &reload);
// Closing a screen with unsaved changes (typed or chosen while adding or
// correcting) asks 変更内容を登録しますか？: Yes presses the confirming button
// (the screen closes when the save succeeds, stays when it fails), No closes,
// Cancel stays with the focus back in the field. mode tells what the screen
// is open for; without it the screen always corrects (a settings dialog).
// A save that succeeds closes with done(), which asks nothing; showing a
// record is no change, and a screen that shows one anew clears edited().
void askBeforeClose(Form *screen, QPushButton *confirmButton, std::function<Mode()> mode = nullptr);
}
