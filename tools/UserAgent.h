// UserAgent.h: what becomes of the user agent of a run.
#pragma once

#include "tools/Report.h"

/// Reports which part of the user agent WebKit refuses, where, and what it then uses.
/// given  the value of "-useragent"; null and empty for none, and the plug-in's properties count
void examine_user_agent(const char* given, Report& report);
