#include "platform/LocalTime.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace conduit {
namespace {

int DayOfYear(const SYSTEMTIME& local) {
  constexpr int daysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  const bool leapYear = local.wYear % 4 == 0 && (local.wYear % 100 != 0 || local.wYear % 400 == 0);
  const bool pastFebruary = local.wMonth > 2;
  return daysBefore[local.wMonth - 1] + local.wDay - 1 + (leapYear && pastFebruary ? 1 : 0);
}

}  // namespace

std::tm LocalTime() {
  SYSTEMTIME local;
  ::GetLocalTime(&local);
  std::tm time{};
  time.tm_sec = local.wSecond;
  time.tm_min = local.wMinute;
  time.tm_hour = local.wHour;
  time.tm_mday = local.wDay;
  time.tm_mon = local.wMonth - 1;
  time.tm_year = local.wYear - 1900;
  time.tm_wday = local.wDayOfWeek;
  time.tm_yday = DayOfYear(local);
  return time;
}

}  // namespace conduit
