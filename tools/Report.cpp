#include "tools/Report.h"

#include "util/Characters.h"

#include <algorithm>
#include <cstdio>

namespace {

/// Bytes after which an escaped text is cut off.
constexpr std::size_t kLongest = 1000;

std::string_view name_of(Level level)
{
    return level == Level::ok ? "OK" : level == Level::note ? "NOTE" : "WRONG";
}

std::string escaped_bytes(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%.2X", static_cast<unsigned char>(byte));
        text += escape;
    }
    return text;
}

std::string json_text(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted + '"';
}

std::string json_member(std::string_view name, std::string_view value)
{
    return json_text(name) + ": " + json_text(value);
}

} // namespace

void Report::add(Level level, std::string_view subject, std::string_view text)
{
    m_findings.push_back({level, escaped(subject), escaped(text)});
    const Finding& made = m_findings.back();
    std::string record(1, static_cast<char>(level));
    record += made.subject + '\0' + made.text + '\0';
    if (record.size() < m_copy.size()) { // a zero remains after the last one
        std::copy(record.begin(), record.end(), m_copy.begin());
        m_copy = m_copy.subspan(record.size());
    }
}

void Report::add_copy(std::span<const char> copy)
{
    for (const char* at = copy.data(); *at != 0;) {
        const auto level = static_cast<Level>(*at);
        const std::string subject = at + 1;
        at += 1 + subject.size() + 1;
        m_findings.push_back({level, subject, at});
        at += m_findings.back().text.size() + 1;
    }
}

bool Report::any_wrong() const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
        [](const Finding& finding) { return finding.level == Level::wrong; });
}

bool Report::has(std::string_view subject) const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
        [subject](const Finding& finding) { return finding.subject == subject; });
}

std::string Report::plain() const
{
    std::string lines;
    for (const Finding& finding : m_findings) {
        std::string level(name_of(finding.level));
        level.resize(6, ' ');
        lines += level + finding.subject + ": " + finding.text + '\n';
    }
    return lines;
}

std::string Report::json(std::string_view name, std::string_view value) const
{
    std::string list;
    for (const Finding& finding : m_findings) {
        list += list.empty() ? "\n  {" : ",\n  {";
        list += json_member("level", name_of(finding.level)) + ", ";
        list += json_member("subject", finding.subject) + ", ";
        list += json_member("text", finding.text) + "}";
    }
    std::string object = "{";
    object += json_member(name, escaped(value)) + ", \"wrong\": ";
    object += any_wrong() ? "true" : "false";
    return object + ", \"findings\": [" + list + "\n]}\n";
}

bool print(const std::string& text)
{
    return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
}

bool is_utf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = first_character(text).length;
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string escaped(std::string_view text)
{
    const std::size_t whole = text.size();
    std::string shown;
    while (!text.empty() && shown.size() < kLongest) {
        const Character character = first_character(text);
        const std::string_view bytes = text.substr(0, std::max<std::size_t>(character.length, 1));
        if (character.length == 0 || is_control(character.value)) {
            shown += escaped_bytes(bytes);
        } else {
            shown += bytes;
        }
        text.remove_prefix(bytes.size());
    }
    return text.empty() ? shown : shown + "... (" + std::to_string(whole) + " bytes)";
}
