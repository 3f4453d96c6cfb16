// Formats of dates and times as RFC 3339 has them, with its grammar of durations. A number that is
// missing reads as -1, which no range holds, so a part of a date or time needs only one test at its
// end.
#include "schema/format/format.h"
#include "schema/format/reader.h"

namespace hearth::schema {
namespace {

bool isBetween(int value, int least, int most) {
  return value >= least && value <= most;
}

// Requires a month from 1 to 12.
int daysIn(int month, int year) {
  static constexpr signed char kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[month - 1] + (month == 2 && leap);
}

bool readDate(Reader& in) {
  const int year = in.readNumber(4);
  const int month = in.skip('-') ? in.readNumber(2) : -1;
  const int day = in.skip('-') ? in.readNumber(2) : -1;
  return year >= 0 && isBetween(month, 1, 12) && isBetween(day, 1, daysIn(month, year));
}

// Reads Z or +hh:mm or -hh:mm, in minutes east.
bool readOffset(Reader& in, int& offset) {
  offset = 0;
  if (in.skipLetter('z')) {
    return true;
  }
  const int sign = in.skip('+') ? 1 : in.skip('-') ? -1 : 0;
  const int hour = sign != 0 ? in.readNumber(2) : -1;
  const int minute = in.skip(':') ? in.readNumber(2) : -1;
  offset = sign * (hour * 60 + minute);
  return isBetween(hour, 0, 23) && isBetween(minute, 0, 59);
}

// A second may be 60 only where a leap second can come: in the last minute of a day in universal
// time.
bool readTime(Reader& in) {
  const int hour = in.readNumber(2);
  const int minute = in.skip(':') ? in.readNumber(2) : -1;
  const int second = in.skip(':') ? in.readNumber(2) : -1;
  if (in.skip('.') && in.skipDigits() == 0) {
    return false;
  }
  int offset = 0;
  if (!readOffset(in, offset) || !isBetween(hour, 0, 23) || !isBetween(minute, 0, 59)) {
    return false;
  }
  constexpr int kDay = 24 * 60;
  const int universal = (hour * 60 + minute - offset + kDay) % kDay;
  return isBetween(second, 0, universal == kDay - 1 ? 60 : 59);
}

// Reads numbers with these units behind them, in this order and with none left out between the
// first and the last: "1Y2M" and "2M3D", but not "1Y3D".
bool readElements(Reader& in, std::string_view units) {
  std::size_t next = units.size();
  std::size_t count = 0;
  for (; isDigit(in.peek()); ++count) {
    in.skipDigits();
    const std::size_t unit = units.find(in.peek());
    if (unit == std::string_view::npos || (count > 0 && unit != next)) {
      return false;
    }
    in.skip(in.peek());
    next = unit + 1;
  }
  return count > 0;
}

}  // namespace

bool isDate(std::string_view text) {
  Reader in(text);
  return readDate(in) && in.atEnd();
}

bool isTime(std::string_view text) {
  Reader in(text);
  return readTime(in) && in.atEnd();
}

bool isDateTime(std::string_view text) {
  Reader in(text);
  return readDate(in) && in.skipLetter('t') && readTime(in) && in.atEnd();
}

// "P" and weeks, or days and what is larger, then "T" and hours and what is smaller.
bool isDuration(std::string_view text) {
  Reader in(text);
  if (!in.skip('P')) {
    return false;
  }
  if (!text.empty() && text.back() == 'W') {
    return readElements(in, "W") && in.atEnd();
  }
  if (in.peek() != 'T' && !readElements(in, "YMD")) {
    return false;
  }
  return (!in.skip('T') || readElements(in, "HMS")) && in.atEnd();
}

}  // namespace hearth::schema
