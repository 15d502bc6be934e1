#include "tools/PageLinks.h"

#include "tools/Doctor.h"
#include "util/Owned.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <set>
#include <utility>

namespace fs = std::filesystem;

namespace {

using OwnedGlibText = std::unique_ptr<char, ReleaseWith<g_free>>;

constexpr char kMock[] = "tovik-mock.js";
/// Bytes of a page that are read; the rest of a longer one is not examined.
constexpr std::size_t kLongestPage = std::size_t {1} << 24U;
/// Elements whose content is text for the scanner, or is not used unless a script asks for it.
constexpr std::string_view kOpaque[]
    = {"script", "style", "textarea", "title", "template", "noscript", "xmp", "iframe"};

constexpr auto kUriFlags = static_cast<GUriFlags>(G_URI_FLAGS_PARSE_RELAXED | G_URI_FLAGS_ENCODED);
constexpr std::string_view kBlanks = " \t\n\f\r";

char lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool is_word(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
}

bool begins_with_word(std::string_view text, std::string_view word)
{
    return text.size() >= word.size()
        && std::equal(word.begin(), word.end(), text.begin(),
            [](char one, char other) { return one == lower(other); });
}

/// Reads the tags of a page one after the other.
class Scanner {
public:
    explicit Scanner(std::string_view html)
        : m_rest(html)
    {
    }

    /// Goes to the next start tag, after comments and end tags; false at the end of the text.
    bool next_tag()
    {
        for (skip_until("<"); !m_rest.empty(); skip_until("<")) {
            if (m_rest.starts_with("!--")) {
                skip_until("-->");
            } else if (std::isalpha(static_cast<unsigned char>(m_rest[0])) != 0) {
                m_tag = word_until(" \t\n\f\r/>");
                return true;
            }
        }
        return false;
    }

    /// Reads the next attribute of the tag, or the end of the tag and false.
    bool next_attribute()
    {
        skip(" \t\n\f\r/");
        if (m_rest.empty() || m_rest[0] == '>') {
            return false;
        }
        const std::size_t equals = m_rest[0] == '=' ? 1 : 0; // begins a name here
        m_rest.remove_prefix(equals);
        m_name = word_until(" \t\n\f\r/>=");
        m_value = {};
        skip(kBlanks);
        if (m_rest.starts_with('=')) {
            m_rest.remove_prefix(1);
            skip(kBlanks);
            m_value = value();
        }
        return true;
    }

    /// The content up to the end tag of this tag, which the scanner passes over.
    std::string_view content()
    {
        const std::string_view from = m_rest;
        const std::string end = "</" + m_tag;
        while (!m_rest.empty() && !begins_with_word(m_rest, end)) {
            m_rest.remove_prefix(std::min(m_rest.find('<', 1), m_rest.size()));
        }
        return from.substr(0, from.size() - m_rest.size());
    }

    /// Name of the tag, in lower case.
    const std::string& tag() const { return m_tag; }

    /// Name of the attribute, in lower case.
    const std::string& name() const { return m_name; }

    /// Value of the attribute as it is written there, without quotes; empty without one.
    std::string_view attribute_value() const { return m_value; }

private:
    std::string_view take(std::size_t length)
    {
        const std::string_view taken = m_rest.substr(0, length);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    void skip_until(std::string_view mark)
    {
        take(m_rest.find(mark));
        take(mark.size());
    }

    void skip(std::string_view characters) { take(m_rest.find_first_not_of(characters)); }

    std::string word_until(std::string_view characters)
    {
        std::string word(take(m_rest.find_first_of(characters)));
        std::transform(word.begin(), word.end(), word.begin(), lower);
        return word;
    }

    std::string_view value()
    {
        if (!m_rest.starts_with('"') && !m_rest.starts_with('\'')) {
            return take(m_rest.find_first_of(" \t\n\f\r>"));
        }
        const char quote = take(1)[0];
        const std::string_view quoted = take(m_rest.find(quote));
        take(1);
        return quoted;
    }

    std::string_view m_rest;
    std::string m_tag;
    std::string m_name;
    std::string_view m_value;
};

/// The URL that an attribute holds: without the blanks around it, line ends and the fragment.
std::string url_of(std::string_view value)
{
    std::string url;
    for (const char c : value.substr(0, value.find('#'))) {
        if (std::string_view("\t\n\r").find(c) == std::string_view::npos) {
            url += c;
        }
    }
    for (std::size_t at = 0; (at = url.find("&amp;", at)) != std::string::npos; ++at) {
        url.erase(at + 1, 4);
    }
    url.erase(0, url.find_first_not_of(kBlanks));
    url.erase(url.find_last_not_of(kBlanks) + 1);
    return url;
}

/// Whether the text up to `at` ends within a line that is a comment.
bool is_commented(std::string_view script, std::size_t at)
{
    std::string_view line = script.substr(0, at);
    line.remove_prefix(line.rfind('\n') + 1);
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    return line.starts_with("//") || line.starts_with('*') || line.starts_with("/*");
}

/// Adds the path that follows `word`, which is "import" or "from", wherever it stands in the
/// script.
void add_imports(std::string_view script, std::string_view word, std::vector<std::string>& links)
{
    for (std::size_t at = 0; (at = script.find(word, at)) != std::string_view::npos;) {
        const std::size_t begin = std::exchange(at, at + word.size());
        const std::size_t quote
            = std::min(script.find_first_not_of(kBlanks, at), script.size() - 1);
        if ((begin > 0 && is_word(script[begin - 1]))
            || (script[quote] != '"' && script[quote] != '\'') || is_commented(script, begin)) {
            continue;
        }
        const std::string_view rest = script.substr(quote + 1);
        const std::string_view path = rest.substr(0, rest.find(script[quote]));
        if (path.starts_with("./") || path.starts_with("../") || path.starts_with('/')) {
            links.push_back(url_of(path));
        }
    }
}

/// Reads the attributes of a tag; whether it begins a module script without `src`.
bool read_attributes(Scanner& scanner, PageReferences& found)
{
    bool isModule = scanner.tag() == "script";
    bool hasType = false;
    while (scanner.next_attribute()) {
        const std::string url = url_of(scanner.attribute_value());
        if (scanner.name() == "type") {
            hasType = begins_with_word(url, "module");
        }
        if (scanner.name() != "src" && scanner.name() != "href") {
            continue;
        }
        isModule = false;
        if (scanner.tag() == "base") {
            found.base = found.base.empty() ? url : found.base;
        } else if (!url.empty()) {
            found.links.push_back(url);
        }
    }
    return isModule && hasType;
}

/// The file that `url` means on a page whose base is `base`; empty when it is no local one.
fs::path file_of(const std::string& base, const std::string& url)
{
    const OwnedGlibText uri(g_uri_resolve_relative(base.c_str(), url.c_str(), kUriFlags, nullptr));
    const std::string whole = uri ? uri.get() : "";
    if (!whole.starts_with("file:")) {
        return {};
    }
    const std::string bare = whole.substr(0, whole.find_first_of("?#"));
    const OwnedGlibText path(g_filename_from_uri(bare.c_str(), nullptr, nullptr));
    return path ? path.get() : "";
}

std::string read_page(const fs::path& page)
{
    std::error_code none;
    if (!fs::is_regular_file(page, none)) {
        return "";
    }
    std::ifstream file(page, std::ios::binary);
    std::string text(std::min<std::size_t>(fs::file_size(page, none), kLongestPage), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

/// What is wrong with a link to `file`; empty when nothing is.
/// base  that of the page, as it is written there
std::string link_fault(const std::string& base, const std::string& link, const fs::path& file)
{
    const std::string named = "names \"" + link + "\", ";
    if (link.starts_with("//")) {
        return named + "which is no server on a local page; write https: before it";
    }
    if (is_there(file)) {
        return "";
    }
    const std::string missing = named + "and there is no " + file.native() + "; ";
    if (link.starts_with('/')) {
        return missing + "build the page with relative paths (a bundler's base \"./\")";
    }
    return missing
        + (base.starts_with('/') ? "remove <base href=\"" + base + "\">"
                                 : "install it or correct the page");
}

} // namespace

PageReferences page_references(std::string_view html)
{
    PageReferences found;
    Scanner scanner(html);
    while (scanner.next_tag()) {
        const bool isModule = read_attributes(scanner, found);
        if (std::find(std::begin(kOpaque), std::end(kOpaque), scanner.tag()) != std::end(kOpaque)) {
            const std::string_view content = scanner.content();
            if (isModule) {
                add_imports(content, "import", found.links);
                add_imports(content, "from", found.links);
            }
        }
    }
    return found;
}

void examine_page_links(const fs::path& page, Report& report)
{
    const OwnedGlibText own(
        g_filename_to_uri(page.c_str(), nullptr, nullptr)); // null for a relative path
    if (!own) {
        return;
    }
    const PageReferences found = page_references(read_page(page));
    const OwnedGlibText resolved(
        g_uri_resolve_relative(own.get(), found.base.c_str(), kUriFlags, nullptr));
    const std::string base = found.base.empty() || !resolved ? own.get() : resolved.get();
    std::set<std::string> told;
    for (const std::string& link : found.links) {
        const fs::path file = file_of(base, link);
        if (file.empty() || !told.insert(link).second) {
            continue;
        }
        if (file.filename() == kMock) {
            report.note("start page",
                "loads " + link + ", which is for a browser; deliver the page without that tag");
        } else if (const std::string fault = link_fault(found.base, link, file); !fault.empty()) {
            report.wrong("start page", fault);
        }
    }
}

void examine_mock(const fs::path& library, Report& report)
{
    const fs::path mock = library.parent_path() / kMock;
    if (is_there(mock)) {
        report.wrong("mock",
            mock.native() + " pretends to be the plug-in where a page has no Tovik; remove it");
    }
}
