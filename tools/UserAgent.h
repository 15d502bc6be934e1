// UserAgent.h: reports the user agent of a run.
#pragma once

#include "tools/Report.h"

/// Reports which part of the user agent WebKit refuses, at which place, and what is used instead.
/// given  value of "-useragent"; null or empty for none: the plug-in's properties are read then
void examine_user_agent(const char* given, Report& report);
