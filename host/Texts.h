// Texts.h: what the host says about itself.
#pragma once

constexpr char kVersion[] = "tovik " TOVIK_VERSION "\n";

constexpr char kHelp[] = R"(Usage: tovik [OPTION]... [ANY://URL?QUERY]

Shows one page in a window and writes the page's answer to a file.

  -url PAGE        page to show: a file of the user interface, a URL, or res://PATH
                   for a page of the plug-in (default index.html)
  -root DIR/       where else files and plug-in are looked for; end it with "/". It must hold
                   this library too, or pages have no plug-in
  -store FILE      write the answer to FILE when the window is gone
  -title TEXT      window title
  -icon FILE       window icon, or "none"
  -size PAIR       0xWWWWHHHH, width and height in pixels, or percentages up to 100
  -position PAIR   0xXXXXYYYY, distance from the left and top edge, or with the top bit of
                   a half set from the right or bottom one
  -fullscreen      fill the work area
  -resizing        let the user resize the window
  -system          stay above other windows
  -useragent TEXT  user agent to present
  -wait MS         pause before the window is shown (default 3)
  -plugin FILE     plug-in library
  -config FILE     configuration file for the plug-in
  -verbose         trace to standard output, with --print to standard error
  --print          print the answer and a line end on standard output
  --help           show this text
  --version        show the version

A value never begins with "-". The query of the first argument that holds "://" is passed on to
the page.

Exit status: 0 the window was shown and is gone, whatever the answer; 2 the library cannot be
loaded; 3 there is no display. The answer stands in FILE alone; CKR_CANCEL is a closed window.
With --print it is 1 when the answer is CKR_CANCEL or there is none, and FILE may be left out.
)";
