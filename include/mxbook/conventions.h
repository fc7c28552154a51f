// Conventions shared by every form of the application: corrections of a
// row's operating time and counters, key filters for hour and number
// entries, the numbered message catalogue and the foreground window's title.
#pragma once

#include <string>

#include "mxbook/data/data_set.h"
#include "mxbook/operating_time.h"

namespace mxbook {

// The operating time in field `fieldIndex` of the data set's current row,
// less (a unit leaving an aircraft) or plus (a unit arriving) `minutes`,
// never below "0:00"; "00:00" for a null field. The field's hours end three
// characters before its end. Throws ConversionError for a text that is not
// operating time. The row is not changed.
std::string FunHourCorrectFromVS(db::DataSet& dataSet, int fieldIndex, int minutes);
std::string FunHourCorrectToVS(db::DataSet& dataSet, int fieldIndex, int minutes);

// The counter in field `fieldIndex`, less or plus `count`, never below 0; 0
// for a null field.
int FunIntegerCorrectFromVS(db::DataSet& dataSet, int fieldIndex, int count);
int FunIntegerCorrectToVS(db::DataSet& dataSet, int fieldIndex, int count);

// Key filters for an edit box's key presses: Backspace, Enter, Escape and
// any decimal digit of any script pass; every other key becomes ":" (hour
// entries) or "." (number entries).
void FunChageToColon(char32_t& key);
void FunChageToPoint(char32_t& key);

// Shows message `number` of the catalogue, built with `text`, in a warning
// box (caption "Внимание!") owned by the foreground window; returns once it
// is closed. A number outside 0 to 31 shows the catalogue's fallback.
void FunMsg(const std::string& text, int number);
// The text message `number` shows.
std::string messageText(const std::string& text, int number);

// The foreground window's title without trailing blanks; empty without one.
std::string GetActiveWindowTitle();

}  // namespace mxbook
