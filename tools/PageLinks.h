// PageLinks.h: the local files that a page on the disk names, and those of them that do not exist.
#pragma once

#include "tools/Report.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What the text of a page refers to, as it is written there but without fragments (#part).
struct PageReferences {
    std::string base; // of the first <base href>; empty without one
    std::vector<std::string> links;
};

/// The values of `src` and `href` of all tags, and the paths ("./x", "../x", "/x") that inline
/// module scripts import by a literal. The scanner accepts any text. It does not see what else a
/// page loads: `srcset`, `url()` of styles, import maps, templates, documents of `srcdoc`, script
/// files and what these import, and whatever a script adds.
PageReferences page_references(std::string_view html);

/// Reports each file that the page at `page` names and that does not exist, once. Says nothing
/// about addresses of other schemes, such as https: and data:. A reference to tovik-mock.js is a
/// note, as a page works without it.
void examine_page_links(const std::filesystem::path& page, Report& report);

/// Reports a tovik-mock.js in the directory of the library.
void examine_mock(const std::filesystem::path& library, Report& report);
