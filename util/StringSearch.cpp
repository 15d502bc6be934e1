// The functions of StringUtil.h and MemoryUtil.h that find a text in another.
#include "util/MemoryUtil.h"
#include "util/StringUtil.h"
#include "util/TextBlocks.h"

namespace tovik {
namespace {

/// The stops of a search: where the character needle[pivot] comes after the one before it in the
/// needle, if it has one, and the terminator or the limit of the text.
template <typename Case, bool kTerminated> struct Pair {
    Pair(const char* needle, std::size_t pivot, const char* end)
        : distance(pivot == 0 ? 0 : 1)
        , left(Case::folded(everywhere(needle[pivot - distance])))
        , right(Case::folded(everywhere(needle[pivot])))
        , limit(end)
    {
    }

    TextBlock stops(TextBlock bytes, TextBlock before) const
    {
        const TextBlock pair = (Case::folded(bytes) ^ right) | (Case::folded(before) ^ left);
        return kTerminated ? least(pair, bytes) : pair;
    }

    TextBlock at(const char* start) const
    {
        return stops(read_text(start), read_text(start - distance));
    }

    /// The character to the left of the text is read alone: the read before may lie in a page in
    /// which the text has no byte.
    ByteMask first(const char* start, const char* text) const
    {
        const TextBlock bytes = read_text(start);
        const TextBlock folded = Case::folded(bytes);
        const auto before = static_cast<unsigned char>(Case::folded(*(text - distance)));
        const ByteMask lefts = zeros(folded ^ left) << distance | (before == left[0] ? 1U : 0U);
        const ByteMask end = kTerminated ? zeros(bytes) : 0;
        return (lefts & zeros(folded ^ right)) | end;
    }

    bool is_over(const char* byte) const { return !kTerminated && byte >= limit; }

    std::size_t distance;
    TextBlock left;
    TextBlock right;
    const char* limit; // unless the text is terminated
};

struct Needle {
    const char* text;
    std::size_t length;
};

/// A suffix of the needle and its period.
struct Suffix {
    std::size_t start;
    std::size_t period;
};

/// The greatest suffix by the order of the folded characters, or by the reversed order.
template <typename Case> Suffix greatest_suffix(const Needle& needle, bool reversed)
{
    Suffix greatest = {0, 1};
    std::size_t rival = 1;
    std::size_t same = 0;
    while (rival + same < needle.length) {
        const char ours = Case::folded(needle.text[greatest.start + same]);
        const char other = Case::folded(needle.text[rival + same]);
        if (ours == other) {
            ++same;
            if (same == greatest.period) {
                rival += same;
                same = 0;
            }
        } else if ((ours > other) != reversed) {
            rival += same + 1;
            same = 0;
            greatest.period = rival - greatest.start;
        } else {
            greatest = {rival, 1};
            ++rival;
            same = 0;
        }
    }
    return greatest;
}

/// How a needle is searched for in a time that grows with the length of the text alone, by the
/// two-way algorithm: the part from `at` on is compared first, and a difference there lets the
/// needle move by all that was compared. After a match of that part, it moves by `step`, and its
/// first `overlap` characters are known to match.
struct Split {
    std::size_t at;
    std::size_t step;
    std::size_t overlap;
};

template <typename Case> Split split_of(const Needle& needle)
{
    const Suffix forward = greatest_suffix<Case>(needle, false);
    const Suffix backward = greatest_suffix<Case>(needle, true);
    const auto [at, period] = forward.start > backward.start ? forward : backward;
    if (common_length<Case, false>(needle.text, needle.text + period, at) == at) {
        return {at, period, needle.length - period};
    }
    return {at, std::max(at, needle.length - at) + 1, 0};
}

/// Finds the first or last occurrence from `text` to `end` in linear time, whatever the needle.
template <typename Case, bool kLast>
const char* find_two_way(const char* text, const char* end, const Needle& needle)
{
    const Split split = split_of<Case>(needle);
    const std::size_t pivot = std::min(std::max<std::size_t>(split.at, 1), needle.length - 1);
    const char* const limit = end - needle.length + pivot + 1;
    const Pair<Case, false> pair(needle.text, pivot, limit);
    const auto same = [&](std::size_t from, std::size_t to) {
        return common_length<Case, false>(text + from, needle.text + from, to - from);
    };
    const char* last = nullptr;
    std::size_t known = 0; // characters at the start of the needle that are known to match
    while (static_cast<std::size_t>(end - text) >= needle.length) {
        const char* place = TextBlocks(text + pivot, pair).stop();
        if (place >= limit) {
            break;
        }
        known = place - pivot == text ? known : 0;
        text = place - pivot;
        const std::size_t start = std::max(split.at, known);
        const std::size_t matched = start + same(start, needle.length);
        if (matched < needle.length) {
            text += matched - split.at + 1;
            known = 0;
            continue;
        }
        if (known >= split.at || known + same(known, split.at) == split.at) {
            last = text;
        }
        if ((!kLast && last != nullptr) || static_cast<std::size_t>(end - text) < split.step) {
            break;
        }
        text += split.step;
        known = split.overlap;
    }
    return last;
}

/// Finds the first or last occurrence from `text` to `end`, or to the terminator of a terminated
/// text. Compares the needle at every place of its first two characters, until this has taken much
/// more work than reading the text; few texts are so like the needle.
template <typename Case, bool kTerminated, bool kLast>
const char* find_needle(const char* text, const char* end, const Needle& needle)
{
    constexpr std::size_t kWorkOfPlace = 16;
    constexpr std::size_t kWorkOfByte = 4;
    constexpr std::size_t kWorkOfSplit = 1024;
    const std::size_t pivot = std::min<std::size_t>(needle.length - 1, 1);
    const char* const limit = kTerminated ? nullptr : end - needle.length + pivot + 1;
    const Pair<Case, kTerminated> pair(needle.text, pivot, limit);
    const char* const rest = needle.text + pivot + 1;
    const std::size_t restLength = needle.length - pivot - 1;
    const char* last = nullptr;
    const char* from = text;
    std::size_t work = 0;
    for (;;) {
        const char* place = TextBlocks(from + pivot, pair).stop();
        if (kTerminated ? *place == 0 : place >= limit) {
            return last;
        }
        const std::size_t same = common_length<Case, false>(place + 1, rest, restLength);
        if (same == restLength) {
            last = place - pivot;
            if (!kLast) {
                return last;
            }
        }
        from = place - pivot + 1;
        work += kWorkOfPlace + same;
        if (work > kWorkOfByte * static_cast<std::size_t>(from - text) + kWorkOfSplit) {
            end = kTerminated ? from + text_length(from) : end;
            const char* later = find_two_way<Case, kLast>(from, end, needle);
            return later != nullptr ? later : last;
        }
    }
}

template <typename Case, bool kLast> const char* find_text(const char* haystack, const char* needle)
{
    if (haystack == nullptr || *haystack == 0 || needle == nullptr || *needle == 0) {
        return nullptr;
    }
    return find_needle<Case, true, kLast>(haystack, nullptr, {needle, text_length(needle)});
}

} // namespace

const char* _strstr(const char* haystack, const char* needle)
{
    return find_text<ExactCase, false>(haystack, needle);
}

char* _strstr(char* haystack, const char* needle)
{
    return const_cast<char*>(_strstr(static_cast<const char*>(haystack), needle));
}

const char* _strrstr(const char* haystack, const char* needle)
{
    return find_text<ExactCase, true>(haystack, needle);
}

char* _strrstr(char* haystack, const char* needle)
{
    return const_cast<char*>(_strrstr(static_cast<const char*>(haystack), needle));
}

const char* _stristr(const char* haystack, const char* needle)
{
    return find_text<AnyCase, false>(haystack, needle);
}

char* _stristr(char* haystack, const char* needle)
{
    return const_cast<char*>(_stristr(static_cast<const char*>(haystack), needle));
}

void* _memfind(void* haystack, std::size_t haystackSize, const void* needle, std::size_t needleSize)
{
    if (haystack == nullptr || needleSize > haystackSize) {
        return nullptr;
    }
    if (needle == nullptr || needleSize == 0) {
        return haystack;
    }
    const auto* bytes = static_cast<const char*>(haystack);
    const Needle sought = {static_cast<const char*>(needle), needleSize};
    return const_cast<char*>(
        find_needle<ExactCase, false, false>(bytes, bytes + haystackSize, sought));
}

} // namespace tovik
