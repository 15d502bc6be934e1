// Console.h: the option "--console", which reports on standard error what happens in a page.
#pragma once

#include "host/Library.h"

/// Reports, a line each: uncaught exceptions, rejected promises and the calls of console in every
/// frame; files that are missing, HTTP statuses from 400 on and pages that do not load; and whether
/// the web process responds. To be called before the view loads a page; `library` is used until the
/// end of the process.
void watch_page(const Library& library, void* view);
