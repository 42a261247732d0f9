// The clock as text, and days added to a date.
#pragma once
#include "platform/string.h"

CString GetCurTime();   // local date, "%d年%d月%d日"
CString GetCurTime2();  // local time, "%d-%02d-%02d %02d:%02d:%02d"

/// The date YYYYMMDD moved by `days`, in the same form; Gregorian at all times. -1 for a date that does not
/// exist, and when the result lies before year 0 or does not fit.
int get_ref_date(int date, int days);
