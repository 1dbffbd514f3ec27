#include "Regex.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <cstdio>
#include <cstdlib>

struct Regex::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
};

namespace {

// Read-only alias of the QString's UTF-16 buffer: no copy, offsets carry over unchanged.
icu::UnicodeString alias(const QString &text)
{
    return icu::UnicodeString(false, reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()));
}

std::unique_ptr<Regex::Compiled> compile(const QString &pattern, bool caseInsensitive)
{
    UParseError parseError{};
    UErrorCode status = U_ZERO_ERROR;
    const uint32_t flags = caseInsensitive ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> compiled(
        icu::RegexPattern::compile(alias(pattern), flags, parseError, status));
    if (U_FAILURE(status))
        return nullptr;
    return std::make_unique<Regex::Compiled>(Regex::Compiled{std::move(compiled)});
}

Regex::Match currentMatch(const icu::RegexMatcher &matcher)
{
    Regex::Match match;
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = matcher.groupCount();
    match.groups.reserve(count + 1);
    for (int32_t g = 0; g <= count; ++g) {
        const int32_t start = matcher.start(g, status);
        const int32_t end = matcher.end(g, status);
        match.groups.append(start < 0 ? TextRange{-1, 0} : TextRange{start, end - start});
    }
    return match;
}

} // namespace

Regex::Regex(const QString &pattern, bool caseInsensitive) : m_pattern(compile(pattern, caseInsensitive))
{
    if (!m_pattern) {
        std::fprintf(stderr, "built-in pattern does not compile: %s\n", qPrintable(pattern));
        std::abort();
    }
}

std::optional<Regex> Regex::tryCompile(const QString &pattern, bool caseInsensitive)
{
    Regex regex;
    regex.m_pattern = compile(pattern, caseInsensitive);
    if (!regex.m_pattern)
        return std::nullopt;
    return regex;
}

Regex::Regex(Regex &&) noexcept = default;
Regex &Regex::operator=(Regex &&) noexcept = default;
Regex::~Regex() = default;

std::optional<Regex::Match> Regex::match(const QString &text, qsizetype from) const
{
    const icu::UnicodeString input = alias(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->pattern->matcher(input, status));
    if (U_FAILURE(status) || from > text.size())
        return std::nullopt;
    if (!matcher->find(int64_t(from), status) || U_FAILURE(status))
        return std::nullopt;
    return currentMatch(*matcher);
}

QList<Regex::Match> Regex::matchAll(const QString &text) const
{
    QList<Match> matches;
    const icu::UnicodeString input = alias(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->pattern->matcher(input, status));
    if (U_FAILURE(status))
        return matches;
    while (matcher->find(status) && U_SUCCESS(status))
        matches.append(currentMatch(*matcher));
    return matches;
}

int Regex::groupCount() const
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->pattern->matcher(status));
    return U_SUCCESS(status) ? matcher->groupCount() : 0;
}
