#pragma once

#include "model/Row.h"

#include <QList>
#include <QString>
#include <memory>
#include <optional>

/// An ICU regular expression over QString text. Positions are UTF-16 offsets of the QString, as ICU
/// works on UTF-16 too. A compiled pattern is immutable and may be matched from several threads at once:
/// every call creates its own matcher.
class Regex {
public:
    /// One match: group 0 is the whole match; a group that did not take part has start -1.
    struct Match {
        QList<TextRange> groups;

        TextRange range(int group = 0) const { return groups[group]; }
        bool has(int group) const { return group < groups.size() && groups[group].start >= 0; }
        QString captured(const QString &text, int group = 0) const
        {
            return has(group) ? text.mid(groups[group].start, groups[group].length) : QString();
        }
    };

    /// A bound on the work of matching a user's pattern, shared by several searches (one field on one
    /// document). A unit is 10,000 steps of ICU's match engine, roughly a tenth of a millisecond; a search
    /// that would exceed what is left, or ICU's 8 MB backtracking stack, is abandoned and gives nothing.
    class Budget {
    public:
        explicit Budget(int units = 2000) : m_left(units) {}
        /// True once a search was abandoned: later searches give nothing at once.
        bool exhausted() const { return m_exhausted; }

    private:
        friend class Regex;
        int m_left;
        bool m_exhausted = false;
    };

    /// Compiles a built-in pattern; a pattern that does not compile is a programming fault and aborts.
    explicit Regex(const QString &pattern, bool caseInsensitive = true);
    /// Compiles a user's pattern; nothing when it does not compile.
    static std::optional<Regex> tryCompile(const QString &pattern, bool caseInsensitive = true);
    /// Why a user's pattern does not compile: ICU's error name (such as "U_REGEX_MISMATCHED_PAREN")
    /// followed by " at offset N" (a UTF-16 offset into the pattern) when ICU names a place; empty when
    /// it compiles.
    static QString compileError(const QString &pattern, bool caseInsensitive = true);

    Regex(Regex &&) noexcept;
    Regex &operator=(Regex &&) noexcept;
    ~Regex();

    /// The first match starting at or after `from`, if any.
    std::optional<Match> match(const QString &text, qsizetype from = 0) const;
    /// As match(), spending from `budget`: nothing once the budget is exhausted. For user patterns, which
    /// may backtrack for minutes.
    std::optional<Match> match(const QString &text, qsizetype from, Budget &budget) const;
    /// Every non-overlapping match, left to right.
    QList<Match> matchAll(const QString &text) const;
    /// True when the pattern matches anywhere in `text`.
    bool contains(const QString &text) const;
    int groupCount() const;

    struct Compiled; // the ICU pattern, kept out of this header

private:
    Regex() = default;
    std::unique_ptr<Compiled> m_pattern;
};
