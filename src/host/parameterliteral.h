#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace host {

// Values a host puts into a parameter slot on a person's behalf, written as literals of the
// engine that receives the statement, so the data service judges them as it judges a typed value.

// A date that moves with the calendar: "today", "start-of-week", "start-of-month" or
// "start-of-year", optionally followed by an offset such as "-30d", "+1w", "-1m" or "-2y"
// (blanks and case do not matter). Nothing when the words are not one of these.
std::optional<QDate> relativeDate(QStringView words, const QDate &today);
bool isRelativeDate(QStringView words);

// The literal the engine (a provider name: "SQLite", "PostgreSQL") compares with a date column:
// 'YYYY-MM-DD' on both. SQLite keeps dates as ISO text; PostgreSQL gives an untyped literal the
// type of the column it meets, so one literal serves date, timestamp and text columns alike.
QString dateLiteral(const QDate &date, const QString &provider);

// A typed or fetched text as the engine's literal: in single quotes, quotes inside doubled
// (PostgreSQL runs with standard_conforming_strings on, so backslashes are plain characters).
// Raises tessaly::Error (InvalidArgument) for a NUL character, which no engine text can hold.
QString textLiteral(const QString &text, const QString &provider);

// Several literals as one slot value, for a condition written as "col IN (@@@Name)".
QString joinLiterals(const QStringList &literals);
// The literals of a slot value joined by joinLiterals (commas inside quotes stay inside).
QStringList splitLiterals(const QString &slotValue);

// A literal's text as a person reads it: 'O''Brien' -> O'Brien; anything else as it is.
QString unquoted(const QString &literal);

// Whether text is a number as engines print them (12, -3.5, 1e3): such a value goes bare.
bool isPlainNumber(const QString &text);

} // namespace host
