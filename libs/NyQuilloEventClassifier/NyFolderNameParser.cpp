#include "NyFolderNameParser.h"

#include <tuple>

#include <QtCore/QDate>
#include <QtCore/QList>
#include <QtCore/QStringView>

#include "NyCalendarWords.h"
#include "NyFolderWords.h"

namespace
{

using DateForm = NyFolderName::DateForm;
using Nature = NyFolderName::Nature;
using PartialDate = NyFolderName::PartialDate;
using Trust = NyCalendarWords::Trust;
using Words = NyFolderWords;

// What stands between two tokens.
enum SeparatorFlag : quint16 {
    Blank = 1,
    Dot = 2,
    Dash = 4,
    LongDash = 8, // a dash that is more than a hyphen
    Underscore = 16,
    Comma = 32,
    Apostrophe = 64,
    Bracket = 128,
    Ampersand = 256,
    Colon = 512,
    OtherSign = 1024,
};

struct Token
{
    enum class Kind : quint8 { Number, Word, Emoji };

    Kind kind = Kind::Word;
    bool used = false;
    quint16 before = 0; // the separators between the token before and this one
    int digits = 0;
    int value = -1; // -1 for numbers too long to mean anything
    qsizetype position = 0;
    qsizetype length = 0;
    QString folded;
    NyCalendarWords::Month month;
    Words::Roles roles;
};

bool isDash(char32_t c)
{
    return c == U'-' || (c >= 0x2010 && c <= 0x2015) || c == 0x2212 || c == U'~' || c == 0x301c || c == 0xff5e || c == 0xff0d;
}

bool isApostrophe(char32_t c)
{
    return c == U'\'' || c == 0x2019 || c == 0x2018 || c == 0x02bc || c == 0x00b4 || c == U'`';
}

bool isEmoji(char32_t c)
{
    return (c >= 0x1f000 && c <= 0x1faff) || (c >= 0x2600 && c <= 0x27bf) || (c >= 0x2b00 && c <= 0x2bff) || (c >= 0x2190 && c <= 0x21ff)
        || (c >= 0x2300 && c <= 0x23ff);
}

// Parts of an emoji: joiner, variation selectors, skin colours come with the symbols' block, tags.
bool continuesEmoji(char32_t c)
{
    return c == 0x200d || (c >= 0xfe00 && c <= 0xfe0f) || c == 0x20e3 || (c >= 0xe0020 && c <= 0xe007f);
}

// Symbols that say "pictures" or decorate.
bool isPictureEmoji(char32_t c)
{
    return (c >= 0x1f4c1 && c <= 0x1f4c2) || (c >= 0x1f4f7 && c <= 0x1f4f9) || c == 0x1f5bc || c == 0x1f39e || c == 0x1f5c2 || c == 0x1f5c3
        || (c >= 0x1f4c5 && c <= 0x1f4c6) || c == 0x2728 || c == 0x2b50 || c == 0x1f31f || (c >= 0x1f000 && c <= 0x1f0ff)
        || (c >= 0x2190 && c <= 0x21ff) || (c >= 0x2b00 && c <= 0x2b4f) || c == 0x1f522 || c == 0x1f195;
}

quint16 separatorFlag(char32_t c)
{
    if (c == U'_')
        return Underscore;
    if (c == U'.' || c == 0x3002)
        return Dot;
    if (c == U'-')
        return Dash;
    if (isDash(c))
        return Dash | LongDash;
    if (c == U',' || c == 0x3001)
        return Comma;
    if (isApostrophe(c))
        return Apostrophe;
    if (c == U'(' || c == U')' || c == U'[' || c == U']' || c == U'{' || c == U'}')
        return Bracket;
    if (c == U'&' || c == U'+')
        return Ampersand;
    if (c == U':' || c == 0xa789 || c == 0x2236)
        return Colon;
    if (QChar::isSpace(c))
        return Blank;
    return OtherSign;
}

bool isCalendarMark(char32_t c)
{
    return c == 0x5e74 || c == 0x6708 || c == 0x65e5 || c == 0xb144 || c == 0xc6d4 || c == 0xc77c;
}

constexpr int NumberLimit = 14;

class Reader
{
public:
    Reader(const QString &name, bool looseWords);

    NyFolderName read();
    bool usedLooseWords() const { return m_usedLooseWords; }

private:
    struct Single
    {
        PartialDate date;
        int end = 0;
        bool dayFirst = false;
        bool mayBeListedMonth = false;
        bool isListedMonth = false;
    };
    struct Match
    {
        DateForm form = DateForm::None;
        PartialDate from;
        PartialDate to;
        int end = 0;
        bool mayBeListedMonth = false;
        int listedNumber = -1;
    };

    void tokenize();
    bool readCameraNames();
    void readDates();
    void add(const Match &match);
    void readTimeOfDay(int index);
    void dropWeekdays();
    void assignRoles();
    void readParts();
    void finish();
    void finishTitle(const QList<int> &rest);
    void readNumbers(const QList<int> &rest);

    bool readSingle(int index, Single *result);
    bool readFromYear(int index, Single *result);
    bool readCompact(int index, Single *result) const;
    bool readFromDayOrMonth(int index, Single *result);
    bool readFromMonthName(int index, Single *result);
    bool readPeriod(int index, Match *result);
    bool readMatch(int index, Match *result);
    bool readDayRange(int index, Match *result);
    bool readRangeEnd(const Single &first, Match *result);
    bool readYearBehind(int index, int *year, int *end) const;

    bool has(int index) const { return index >= 0 && index < m_tokens.size(); }
    bool isNumber(int index, int minimumDigits, int maximumDigits) const
    {
        return has(index) && m_tokens[index].kind == Token::Kind::Number && m_tokens[index].digits >= minimumDigits
            && m_tokens[index].digits <= maximumDigits;
    }
    bool isWord(int index) const { return has(index) && m_tokens[index].kind == Token::Kind::Word; }
    bool isYear(int index) const
    {
        return isNumber(index, 4, 4) && m_tokens[index].value >= NyFolderNameParser::MinimumYear
            && m_tokens[index].value <= NyFolderNameParser::MaximumYear;
    }
    bool isSign(int index, char16_t chinese, char16_t korean) const
    {
        return isWord(index) && m_tokens[index].before == 0 && m_tokens[index].folded.size() == 1
            && (m_tokens[index].folded.at(0) == chinese || m_tokens[index].folded.at(0) == korean);
    }
    quint16 behind(int index) const { return index + 1 < m_tokens.size() ? m_tokens[index + 1].before : m_trailing; }
    char separator(int index) const;
    bool isRangeJoint(int index, int *next) const;
    NyCalendarWords::Month monthAt(int index) const { return has(index) ? m_tokens[index].month : NyCalendarWords::Month{}; }
    int skipJoint(int index) const { return isWord(index) && m_calendar.isJoint(m_tokens[index].folded) ? index + 1 : index; }
    int skipOrdinal(int index) const
    {
        return isWord(index) && m_tokens[index].before == 0 && m_calendar.isOrdinal(m_tokens[index].folded) ? index + 1 : index;
    }

    const NyCalendarWords &m_calendar = NyCalendarWords::instance();
    const NyFolderWords &m_words = NyFolderWords::instance();
    const QString m_name;
    const bool m_looseWords;
    bool m_usedLooseWords = false;
    bool m_cameraName = false;
    QList<Token> m_tokens;
    quint16 m_trailing = 0;
    NyFolderName m_result;
};

int twoDigitYear(int value)
{
    return value <= 49 ? 2000 + value : 1900 + value;
}

bool isValid(int year, int month, int day)
{
    // A leap year stands in for an unknown one.
    return QDate::isValid(year > 0 ? year : 2000, month, day);
}

bool isYearValue(int value)
{
    return value >= NyFolderNameParser::MinimumYear && value <= NyFolderNameParser::MaximumYear;
}

Reader::Reader(const QString &name, bool looseWords)
    : m_name(name)
    , m_looseWords(looseWords)
{
    tokenize();
}

void Reader::tokenize()
{
    quint16 separators = 0;
    int dashes = 0;
    const qsizetype size = m_name.size();
    qsizetype position = 0;
    qsizetype next = 0;
    const auto codePoint = [this, size, &next](qsizetype at) -> char32_t {
        const QChar c = m_name.at(at);
        if (c.isHighSurrogate() && at + 1 < size && m_name.at(at + 1).isLowSurrogate()) {
            next = at + 2;
            return QChar::surrogateToUcs4(c, m_name.at(at + 1));
        }
        next = at + 1;
        return c.unicode();
    };
    m_tokens.reserve(8);
    while (position < size) {
        const char32_t c = codePoint(position);
        const bool digit = QChar::category(c) == QChar::Number_DecimalDigit;
        const bool letter = QChar::isLetter(c) || QChar::category(c) == QChar::Number_Letter;
        const bool emoji = !digit && !letter && isEmoji(c);
        if (!digit && !letter && !emoji) {
            const quint16 flag = separatorFlag(c);
            dashes += flag & Dash ? 1 : 0;
            if (!continuesEmoji(c))
                separators |= flag;
            position = next;
            continue;
        }
        Token token;
        token.position = position;
        if (dashes > 1)
            separators |= LongDash;
        token.before = separators;
        qsizetype end = next;
        if (digit) {
            token.kind = Token::Kind::Number;
            qint64 value = 0;
            qsizetype at = position;
            while (at < size) {
                const char32_t d = codePoint(at);
                if (QChar::category(d) != QChar::Number_DecimalDigit)
                    break;
                if (token.digits < NumberLimit)
                    value = value * 10 + QChar::digitValue(d);
                ++token.digits;
                at = next;
            }
            end = at;
            token.value = token.digits <= 9 ? int(value) : -1;
            if (token.digits > 4 && token.digits <= NumberLimit)
                token.folded = QString::number(value).rightJustified(token.digits, QLatin1Char('0'));
        } else if (letter) {
            qsizetype at = end;
            // 年, 月 and 日 end a number; what follows is another word.
            const bool mark
                = isCalendarMark(c) && separators == 0 && !m_tokens.isEmpty() && m_tokens.constLast().kind == Token::Kind::Number;
            while (!mark && at < size) {
                const char32_t d = codePoint(at);
                if (!QChar::isLetter(d) && !QChar::isMark(d) && QChar::category(d) != QChar::Number_Letter)
                    break;
                at = next;
            }
            end = at;
            token.folded = m_name.mid(position, end - position).toCaseFolded();
            token.month = m_calendar.month(token.folded);
        } else {
            token.kind = Token::Kind::Emoji;
            bool picture = isPictureEmoji(c);
            qsizetype at = end;
            while (at < size) {
                const char32_t d = codePoint(at);
                if (!isEmoji(d) && !continuesEmoji(d))
                    break;
                picture = picture && (continuesEmoji(d) || isPictureEmoji(d));
                at = next;
            }
            end = at;
            if (picture)
                token.roles = Words::Filler;
        }
        token.length = end - position;
        position = end;
        m_tokens.append(token);
        separators = 0;
        dashes = 0;
    }
    m_trailing = separators;
}

/**
 * What separates the token from the one before: 0 nothing, '.' a dot, '-' a hyphen, '_' an underscore, ' ' blanks, 'w' a dash with
 * something around it, ',' a comma, '\'' an apostrophe, '&' an and, '?' anything else.
 */
char Reader::separator(int index) const
{
    const quint16 flags = m_tokens[index].before;
    if (flags == 0)
        return 0;
    if (flags & (Bracket | OtherSign | Colon))
        return '?';
    if (flags & Dash)
        return flags == Dash ? '-' : 'w';
    if (flags & Apostrophe)
        return '\'';
    if (flags & Comma)
        return ',';
    if (flags & Ampersand)
        return '&';
    if (flags & Dot)
        return '.';
    if (flags & Underscore)
        return '_';
    return ' ';
}

/** Whether a dash, an "and" or a word such as "bis" leads to the token, which is then *next. */
bool Reader::isRangeJoint(int index, int *next) const
{
    if (!has(index))
        return false;
    const char between = separator(index);
    if (isWord(index) && m_calendar.isRange(m_tokens[index].folded) && has(index + 1)) {
        *next = index + 1;
        // "jusqu'au", "bis zum", "fino al", "t/m" come in two words.
        if (isWord(*next) && has(*next + 1) && (m_tokens[*next].folded == u"zum" || m_tokens[*next].folded == u"al"))
            ++*next;
        return true;
    }
    if (isWord(index) && isWord(index + 1) && has(index + 2)
        && ((m_tokens[index].folded == u"jusqu" && m_tokens[index + 1].folded == u"au")
            || (m_tokens[index].folded == u"t" && m_tokens[index + 1].folded == u"m"))) {
        *next = index + 2;
        return true;
    }
    if (between == '-' || between == 'w' || between == '&') {
        *next = index;
        return true;
    }
    return false;
}

/** The year that completes a date or period, directly behind it: "2024", "de 2024", "'24", "24". */
bool Reader::readYearBehind(int index, int *year, int *end) const
{
    int at = index;
    if (isWord(at) && m_calendar.isJoint(m_tokens[at].folded))
        ++at;
    if (!has(at))
        return false;
    const char between = separator(at);
    if (isYear(at) && between != '?') {
        *year = m_tokens[at].value;
        *end = isSign(at + 1, u'年', u'년') ? at + 2 : at + 1;
        return true;
    }
    if (isNumber(at, 2, 2) && at == index && (between == '\'' || between == ' ' || between == '.' || between == '-' || between == '_')) {
        *year = twoDigitYear(m_tokens[at].value);
        *end = at + 1;
        return true;
    }
    return false;
}

/** Whole dates in digits: 20240615, 15062024, 240615, 202406, with or without a time behind them. */
bool Reader::readCompact(int index, Single *result) const
{
    if (!isNumber(index, 6, 14))
        return false;
    const Token &token = m_tokens[index];
    const QString &digits = token.folded;
    const auto part = [&digits](int from, int length) { return QStringView(digits).mid(from, length).toInt(); };
    result->end = index + 1;
    if (token.digits == 8 || token.digits == 12 || token.digits == 14) {
        if (token.digits > 8 && (part(8, 2) > 23 || part(10, 2) > 59))
            return false;
        if (isYearValue(part(0, 4)) && isValid(part(0, 4), part(4, 2), part(6, 2))) {
            result->date = {part(0, 4), part(4, 2), part(6, 2)};
            return true;
        }
        if (token.digits == 8 && isYearValue(part(4, 4)) && isValid(part(4, 4), part(2, 2), part(0, 2))) {
            result->date = {part(4, 4), part(2, 2), part(0, 2)};
            return true;
        }
        return false;
    }
    if (token.digits != 6)
        return false;
    if (isYearValue(part(0, 4)) && part(4, 2) >= 1 && part(4, 2) <= 12) {
        result->date = {part(0, 4), part(4, 2), 0};
        return true;
    }
    // Six digits mean anything, so only at the beginning of a name are they taken for a short date.
    if (index != 0)
        return false;
    if (isValid(twoDigitYear(part(0, 2)), part(2, 2), part(4, 2)))
        result->date = {twoDigitYear(part(0, 2)), part(2, 2), part(4, 2)};
    else if (isValid(twoDigitYear(part(4, 2)), part(2, 2), part(0, 2)))
        result->date = {twoDigitYear(part(4, 2)), part(2, 2), part(0, 2)};
    else
        return false;
    return true;
}

/** A year and what follows it: 2024, 2024-07, 2024-07-15, 2024 Juli, 2024-Jul-15, 2024年7月15日. */
bool Reader::readFromYear(int index, Single *result)
{
    if (!isYear(index))
        return false;
    const int year = m_tokens[index].value;
    int at = index + 1;
    const bool signs = isSign(at, u'年', u'년');
    if (signs)
        ++at;
    result->date = {year, 0, 0};
    result->end = at;
    if (!has(at))
        return true;

    const char first = separator(at);
    const bool numeric = isNumber(at, 1, 2)
        && (first == '-' || first == '.' || first == '_' || ((first == ' ' || first == 'w') && m_tokens[at].digits == 2)
            || (signs && first == 0));
    if (numeric) {
        const int value = m_tokens[at].value;
        int behindMonth = at + 1;
        const bool monthSign = isSign(behindMonth, u'月', u'월');
        if (monthSign)
            ++behindMonth;
        const bool dayFollows = isNumber(behindMonth, 1, 2)
            && ((separator(behindMonth) == first && first != 'w' && (first != ' ' || m_tokens[behindMonth].digits == 2))
                || (monthSign && separator(behindMonth) == 0));
        if (dayFollows) {
            const int second = m_tokens[behindMonth].value;
            const bool monthFirst = isValid(year, value, second);
            if (monthFirst || isValid(year, second, value)) {
                result->date = {year, monthFirst ? value : second, monthFirst ? second : value};
                result->end = isSign(behindMonth + 1, u'日', u'일') ? behindMonth + 2 : behindMonth + 1;
                return true;
            }
        }
        if (value >= 1 && value <= 12) {
            result->date.month = value;
            result->end = behindMonth;
            // "2024-07 Juli" says the month twice.
            const NyCalendarWords::Month named = monthAt(behindMonth);
            if (named.number == value)
                result->end = behindMonth + 1;
            else if (named.number > 0 && isValid(year, named.number, value)) {
                result->date = {year, named.number, value};
                result->end = behindMonth + 1;
            }
            return true;
        }
        const NyCalendarWords::Month named = monthAt(at + 1);
        if (named.number > 0 && isValid(year, named.number, value)) {
            result->date = {year, named.number, value};
            result->end = at + 2;
        }
        return true;
    }

    const NyCalendarWords::Month named = monthAt(at);
    if (named.number > 0 && first != '?' && (m_looseWords || named.trust == Trust::Full || named.trust == Trust::Short)) {
        if (named.trust == Trust::Genitive)
            return true;
        if (named.trust == Trust::WeakShort || named.trust == Trust::Foreign)
            m_usedLooseWords = true;
        result->date.month = named.number;
        result->end = at + 1;
        const int day = at + 1;
        if (isNumber(day, 1, 2)) {
            const char second = separator(day);
            if ((second == ' ' || second == '-' || second == '.' || second == '_') && isValid(year, named.number, m_tokens[day].value)) {
                result->date.day = m_tokens[day].value;
                result->end = skipOrdinal(day + 1);
            }
        }
    }
    return true;
}

/** Dates that begin with a small number: 15.07.2024, 7-15-2024, 15.07., 07-2024, 15. Juli 2024, 1er mai, 6月15日. */
bool Reader::readFromDayOrMonth(int index, Single *result)
{
    if (!isNumber(index, 1, 2))
        return false;
    const int first = m_tokens[index].value;
    const bool firstPadded = m_tokens[index].digits == 2;
    const int at = index + 1;
    if (!has(at) || first == 0)
        return false;
    const char between = separator(at);

    if (isSign(at, u'月', u'월') && first <= 12) {
        result->date = {0, first, 0};
        result->end = at + 1;
        if (isNumber(at + 1, 1, 2) && separator(at + 1) == 0 && isValid(0, first, m_tokens[at + 1].value)) {
            result->date.day = m_tokens[at + 1].value;
            result->end = isSign(at + 2, u'日', u'일') ? at + 3 : at + 2;
        }
        return true;
    }

    // Day and month by name.
    const int ordinal = skipOrdinal(at);
    const int name = monthAt(ordinal).number > 0 ? ordinal : skipJoint(ordinal);
    const NyCalendarWords::Month named = monthAt(name);
    if (named.number > 0 && separator(name) != '?' && separator(name) != ',') {
        const char toName = separator(name);
        const bool sameNumber = first == named.number && ordinal == at && name == at
            && (between == ' ' || between == '_' || between == '-' || between == 'w' || between == 0);
        int year = 0;
        int end = name + 1;
        // Two digits behind a day and a month are the year: "15. Juli 24".
        const bool hasYear = readYearBehind(name + 1, &year, &end);
        if (toName == 'w' && !sameNumber)
            return false;
        // "03 Mar" is March by its number, but only when nothing else stands there: "iPhone 12 Pro" is no December.
        const bool alone = index == 0 && name + 1 == m_tokens.size();
        const bool trusted = named.trust == Trust::Full || named.trust == Trust::Genitive || named.trust == Trust::Short || hasYear
            || (sameNumber && alone);
        if (trusted && isValid(year, named.number, first)) {
            if (named.trust == Trust::Foreign && !m_looseWords)
                return false;
            if (named.trust == Trust::WeakShort || named.trust == Trust::Foreign)
                m_usedLooseWords = true;
            result->end = end;
            const bool uniform = hasYear && isYear(end - 1) && separator(end - 1) == between && between != ' ';
            if (sameNumber && !uniform && (firstPadded || between == 'w')) {
                // "07 Juli" belongs to a list of months.
                result->date = {year, named.number, 0};
                result->isListedMonth = true;
                return true;
            }
            result->date = {year, named.number, first};
            result->dayFirst = true;
            result->mayBeListedMonth = sameNumber && !hasYear;
            return true;
        }
    }

    // Three numbers.
    if (isNumber(at, 1, 2) && has(at + 1) && (between == '.' || between == '-' || between == '_' || between == ' ')
        && separator(at + 1) == between) {
        const int second = m_tokens[at].value;
        const bool bothPadded = firstPadded && m_tokens[at].digits == 2;
        int year = 0;
        if (isYear(at + 1) && (between != ' ' || bothPadded))
            year = m_tokens[at + 1].value;
        else if (isNumber(at + 1, 2, 2) && (between == '.' || (bothPadded && between != ' ')))
            year = twoDigitYear(m_tokens[at + 1].value);
        if (year > 0) {
            result->end = at + 2;
            if (isValid(year, second, first)) {
                result->date = {year, second, first};
                result->dayFirst = true;
                return true;
            }
            if (isValid(year, first, second)) {
                result->date = {year, first, second};
                return true;
            }
            if (isNumber(at + 1, 2, 2) && isValid(twoDigitYear(first), second, m_tokens[at + 1].value)) {
                result->date = {twoDigitYear(first), second, m_tokens[at + 1].value};
                return true;
            }
        }
    }

    // Month and year.
    if (isYear(at) && first <= 12 && (between == '-' || between == '.' || between == '_' || (between == ' ' && firstPadded))) {
        result->date = {m_tokens[at].value, first, 0};
        result->end = at + 1;
        return true;
    }

    // Day and month with dots: both written out, or with a dot at the end too.
    if (isNumber(at, 1, 2) && between == '.' && isValid(0, m_tokens[at].value, first)) {
        const bool closed = behind(at) & Dot;
        if (closed || (firstPadded && m_tokens[at].digits == 2)) {
            result->date = {0, m_tokens[at].value, first};
            result->end = at + 1;
            result->dayFirst = true;
            return true;
        }
    }
    return false;
}

/** Juli, Juli 2024, July 15, 2024, July 15th, Juli '24. */
bool Reader::readFromMonthName(int index, Single *result)
{
    const NyCalendarWords::Month named = monthAt(index);
    if (named.number == 0 || named.trust == Trust::Genitive)
        return false;
    result->date = {0, named.number, 0};
    result->end = index + 1;
    const bool weak = named.trust == Trust::WeakShort || named.trust == Trust::Foreign;
    if (weak && !m_looseWords)
        return false;

    const int at = index + 1;
    if (isNumber(at, 1, 2) && !weak) {
        const char between = separator(at);
        const int day = m_tokens[at].value;
        const int behindDay = skipOrdinal(at + 1);
        const bool ordinal = behindDay > at + 1;
        const bool joined = between == ' ' || between == '-' || between == '.' || between == '_' || between == 0;
        if (joined && isValid(0, named.number, day)) {
            const int yearAt = skipJoint(behindDay);
            if (isYear(yearAt) && separator(yearAt) != '?' && separator(yearAt) != 'w') {
                result->date = {m_tokens[yearAt].value, named.number, day};
                result->end = yearAt + 1;
                return true;
            }
            // "July 24" is a day, "Juli 24" a month of 2024.
            if (ordinal || named.englishOnly || m_tokens[at].digits == 1) {
                result->date.day = day;
                result->end = behindDay;
                return true;
            }
        }
    }
    int year = 0;
    int end = 0;
    if (readYearBehind(at, &year, &end)) {
        if (weak && !isYear(end - 1))
            return false;
        if (weak)
            m_usedLooseWords = true;
        result->date.year = year;
        result->end = end;
        return true;
    }
    if (weak || !m_looseWords)
        return false;
    m_usedLooseWords = true;
    return true;
}

bool Reader::readSingle(int index, Single *result)
{
    *result = {};
    return readFromYear(index, result) || readCompact(index, result) || readFromDayOrMonth(index, result)
        || readFromMonthName(index, result);
}

/** Quarters, calendar weeks, half-years, seasons and decades. */
bool Reader::readPeriod(int index, Match *result)
{
    result->form = DateForm::Period;
    const auto withYear = [this, result](int end, bool yearNeeded) {
        int year = 0;
        int behindYear = end;
        const bool found = readYearBehind(end, &year, &behindYear);
        const bool yearBefore = !found && m_result.dateForm == DateForm::Year;
        if (yearNeeded && !found && !yearBefore)
            return false;
        result->from = result->to = {year, 0, 0};
        result->end = behindYear;
        // "Winter 2023-24", "Winter 2023/2024"
        if (found && isYear(behindYear - 1) && has(behindYear)) {
            const bool joined = !(m_tokens[behindYear].before & (Blank | Bracket)) && m_tokens[behindYear].before != 0;
            if (joined
                && (m_tokens[behindYear].value == year + 1
                    || (isNumber(behindYear, 2, 2) && m_tokens[behindYear].value == (year + 1) % 100))) {
                result->to.year = year + 1;
                ++result->end;
            }
        }
        return true;
    };

    if (isNumber(index, 1, 2)) {
        const int value = m_tokens[index].value;
        int word = index + 1;
        const bool ordinal = (has(word) && (m_tokens[word].before & Dot)) || skipOrdinal(word) > word;
        word = skipOrdinal(word);
        if (isWord(word)) {
            const QString &folded = m_tokens[word].folded;
            if (m_calendar.isQuarter(folded) && folded.size() > 1 && value >= 1 && value <= 4)
                return withYear(word + 1, false);
            if (m_calendar.isHalfYear(folded) && value >= 1 && value <= 2)
                return withYear(word + 1, false);
            if (m_calendar.isWeek(folded) && folded.size() > 1 && ordinal && value >= 1 && value <= 53)
                return withYear(word + 1, false);
        }
    }
    if (isNumber(index, 2, 2) || isYear(index)) {
        // "90er Jahre", "1980s"
        const int value = m_tokens[index].value;
        if (value % 10 == 0 && isWord(index + 1) && !(m_tokens[index + 1].before & ~Apostrophe)
            && (m_tokens[index + 1].folded == u"er" || m_tokens[index + 1].folded == u"s" || m_tokens[index + 1].folded == u"ern")) {
            const int decade = isYear(index) ? value : twoDigitYear(value);
            result->form = DateForm::Years;
            result->from = {decade, 0, 0};
            result->to = {decade + 9, 0, 0};
            result->end = isWord(index + 2) && m_calendar.isDecade(m_tokens[index + 2].folded) ? index + 3 : index + 2;
            return true;
        }
    }
    if (!isWord(index))
        return false;
    const QString &word = m_tokens[index].folded;
    if (m_calendar.isDecade(word) && (isNumber(index + 1, 2, 2) || isYear(index + 1)) && m_tokens[index + 1].value % 10 == 0
        && m_tokens[index + 1].value > 0 && word != u"jahre") {
        const int decade = isYear(index + 1) ? m_tokens[index + 1].value : twoDigitYear(m_tokens[index + 1].value);
        result->form = DateForm::Years;
        result->from = {decade, 0, 0};
        result->to = {decade + 9, 0, 0};
        result->end = index + 2;
        return true;
    }
    if (isNumber(index + 1, 1, 2) && separator(index + 1) != '?') {
        const int value = m_tokens[index + 1].value;
        const bool glued = m_tokens[index + 1].before == 0;
        if (m_calendar.isQuarter(word) && value >= 1 && value <= 4 && (word.size() > 1 || glued))
            return withYear(index + 2, false);
        if (m_calendar.isHalfYear(word) && value >= 1 && value <= 2)
            return withYear(index + 2, false);
        if (m_calendar.isWeek(word) && value >= 1 && value <= 53 && (word.size() > 1 || glued))
            return withYear(index + 2, word.size() == 1);
        // "T3 2024", a trimestre
        if (word == u"t" && glued && value >= 1 && value <= 4)
            return withYear(index + 2, true);
    }
    if (m_calendar.isSeason(word)) {
        int year = 0;
        int end = 0;
        const bool yearKnown = readYearBehind(index + 1, &year, &end) || m_result.dateForm == DateForm::Year;
        if (!yearKnown && !m_looseWords)
            return false;
        if (!yearKnown)
            m_usedLooseWords = true;
        return withYear(index + 1, false);
    }
    return false;
}

/** Ranges whose first end is but a day: 12.-26.03.2024, 12 au 26 mars 2024, March 12-26, 2024. */
bool Reader::readDayRange(int index, Match *result)
{
    result->form = DateForm::Range;
    if (isNumber(index, 1, 2)) {
        const int first = m_tokens[index].value;
        const int ordinal = skipOrdinal(index + 1);
        int next = 0;
        Single second;
        if (first < 1 || !isRangeJoint(ordinal, &next) || !isNumber(next, 1, 2) || !readSingle(next, &second))
            return false;
        if (!second.dayFirst || second.date.day <= first || second.date.day == 0)
            return false;
        result->from = {second.date.year, second.date.month, first};
        result->to = second.date;
        result->end = second.end;
        return true;
    }
    const NyCalendarWords::Month named = monthAt(index);
    if (named.number > 0 && (named.trust == Trust::Full || named.trust == Trust::Short) && isNumber(index + 1, 1, 2)) {
        const int behindFirst = skipOrdinal(index + 2);
        int next = 0;
        if (!isRangeJoint(behindFirst, &next) || !isNumber(next, 1, 2))
            return false;
        const int first = m_tokens[index + 1].value;
        const int last = m_tokens[next].value;
        int end = skipOrdinal(next + 1);
        int year = 0;
        if (isYear(skipJoint(end))) {
            year = m_tokens[skipJoint(end)].value;
            end = skipJoint(end) + 1;
        }
        if (!isValid(year, named.number, first) || !isValid(year, named.number, last) || last <= first)
            return false;
        result->from = {year, named.number, first};
        result->to = {year, named.number, last};
        result->end = end;
        return true;
    }
    return false;
}

/** The second end of a range whose first end has been read. */
bool Reader::readRangeEnd(const Single &first, Match *result)
{
    int next = 0;
    if (!isRangeJoint(first.end, &next))
        return false;
    const PartialDate &from = first.date;
    Single second;

    if (from.year > 0 && from.month == 0) {
        // 2019-2021, 2023-24
        if (isYear(next) && !(isNumber(next + 1, 1, 2) && separator(next + 1) == '-' && m_tokens[next + 1].value <= 12)
            && m_tokens[next].value > from.year) {
            result->form = DateForm::Years;
            result->to = {m_tokens[next].value, 0, 0};
            result->end = next + 1;
            return true;
        }
        if (isNumber(next, 2, 2) && m_tokens[next].value > from.year % 100 && m_tokens[next].value > 12 && next == first.end) {
            result->form = DateForm::Years;
            result->to = {from.year - from.year % 100 + m_tokens[next].value, 0, 0};
            result->end = next + 1;
            return true;
        }
        return false;
    }

    if (from.day > 0 && from.year > 0) {
        // The end may lack what the beginning has: 2024-03-12 - 03-26, 2024-03-12 bis 26, 20240312-26, 20240312-0326.
        if (isNumber(next, 2, 2) && isNumber(next + 1, 2, 2) && separator(next + 1) == '-'
            && isValid(from.year, m_tokens[next].value, m_tokens[next + 1].value) && !isNumber(next + 2, 1, 4)) {
            result->form = DateForm::Range;
            result->to = {from.year, m_tokens[next].value, m_tokens[next + 1].value};
            result->end = next + 2;
            return QDate(from.year, from.month, from.day) < QDate(result->to.year, result->to.month, result->to.day);
        }
        if (isNumber(next, 4, 4) && !isYear(next) && isValid(from.year, m_tokens[next].value / 100, m_tokens[next].value % 100)) {
            result->form = DateForm::Range;
            result->to = {from.year, m_tokens[next].value / 100, m_tokens[next].value % 100};
            result->end = next + 1;
            return QDate(from.year, from.month, from.day) < QDate(result->to.year, result->to.month, result->to.day);
        }
    }
    const bool secondIsDate = readSingle(next, &second);
    if (from.day > 0 && (!secondIsDate || second.date.day == 0) && isNumber(next, 1, 2) && !first.dayFirst) {
        const char behindDay = has(next + 1) ? separator(next + 1) : 0;
        if (m_tokens[next].value > from.day && isValid(from.year, from.month, m_tokens[next].value)
            && !(isNumber(next + 1, 1, 2) && behindDay != ' ')) {
            result->form = DateForm::Range;
            result->to = {from.year, from.month, m_tokens[next].value};
            result->end = next + 1;
            return true;
        }
    }
    if (!secondIsDate)
        return false;
    PartialDate to = second.date;
    PartialDate begin = from;
    if ((begin.day > 0) != (to.day > 0) || to.month == 0 || begin.month == 0)
        return false;
    if (to.year == 0)
        to.year = begin.year;
    // "30.12.-02.01.2024" begins in the year before.
    if (begin.year == 0 && to.year > 0)
        begin.year = begin.month > to.month ? to.year - 1 : to.year;
    const auto order = [](const PartialDate &date) { return (date.year * 16 + date.month) * 32 + date.day; };
    if (order(begin) >= order(to) && begin.year > 0)
        return false;
    result->form = to.day > 0 ? DateForm::Range : DateForm::Period;
    result->from = begin;
    result->to = to;
    result->end = second.end;
    return true;
}

bool Reader::readMatch(int index, Match *result)
{
    *result = {};
    // The number of "Tag 3" is no part of a date, unless it is a whole one: "Tag 3 - 15. Juli".
    const bool numbersSomething = index > 0 && isNumber(index, 1, 2) && isWord(index - 1) && !m_tokens[index - 1].used
        && (m_words.roles(m_tokens[index - 1].folded) & (Words::DayWord | Words::PartWord | Words::NumberWord));
    if (readPeriod(index, result))
        return true;
    *result = {};
    if (!numbersSomething && readDayRange(index, result))
        return true;
    *result = {};
    Single single;
    if (!readSingle(index, &single))
        return false;
    const PartialDate &date = single.date;
    if (numbersSomething && (date.day == 0 || date.year == 0))
        return false;
    result->from = result->to = date;
    result->end = single.end;
    if (readRangeEnd(single, result))
        return true;
    result->from = result->to = date;
    result->end = single.end;
    result->mayBeListedMonth = single.mayBeListedMonth;
    if (single.isListedMonth)
        result->listedNumber = date.month;
    if (date.day > 0)
        result->form = date.year > 0 ? DateForm::FullDate : DateForm::Day;
    else if (date.month > 0)
        result->form = date.year > 0 ? DateForm::YearMonth : DateForm::Month;
    else
        result->form = DateForm::Year;
    return true;
}

/** Joins a further date to those read already: the more exact one stays, and gets the year from the other. */
void Reader::add(const Match &match)
{
    const DateForm known = m_result.dateForm;
    if (known == DateForm::None) {
        m_result.dateForm = match.form;
        m_result.from = match.from;
        m_result.to = match.to;
        m_result.mayBeListedMonth = match.mayBeListedMonth;
        return;
    }
    const auto setYear = [this](int year) {
        if (year == 0 || m_result.from.year > 0)
            return;
        m_result.from.year = year;
        m_result.to.year = year;
        if (m_result.dateForm == DateForm::Month)
            m_result.dateForm = DateForm::YearMonth;
        else if (m_result.dateForm == DateForm::Day)
            m_result.dateForm = DateForm::FullDate;
    };
    if (known == match.form) {
        const PartialDate from = m_result.from;
        if (from == match.from || match.form == DateForm::Range)
            return;
        if (from.year == 0 && match.form == DateForm::Period) {
            setYear(match.from.year);
            return;
        }
        const bool later = std::tuple(from.year, from.month, from.day) < std::tuple(match.from.year, match.from.month, match.from.day);
        if (match.form == DateForm::Year)
            m_result.dateForm = DateForm::Years;
        else if (match.form == DateForm::FullDate || match.form == DateForm::Day)
            m_result.dateForm = DateForm::Range;
        else
            m_result.dateForm = DateForm::Period;
        if (later) {
            m_result.to = match.to;
        } else {
            m_result.to = m_result.from;
            m_result.from = match.from;
        }
        return;
    }
    if (match.form > known) {
        const int year = known == DateForm::Years ? 0 : m_result.from.year;
        m_result.dateForm = match.form;
        m_result.from = match.from;
        m_result.to = match.to;
        m_result.mayBeListedMonth = match.mayBeListedMonth;
        setYear(year);
    } else if (known == DateForm::Years && match.form == DateForm::Year) {
        m_result.from.year = qMin(m_result.from.year, match.from.year);
        m_result.to.year = qMax(m_result.to.year, match.from.year);
    } else if (match.form != DateForm::Years) {
        setYear(match.from.year);
    }
}

/** Skips the time of day behind a full date: 18-30-12, 18.30 Uhr, 18h30, 183012. */
void Reader::readTimeOfDay(int index)
{
    const auto isSixty = [this](int at) { return isNumber(at, 2, 2) && m_tokens[at].value < 60; };
    int end = index;
    if (isWord(end) && m_tokens[end].folded == u"t" && m_tokens[end].before == 0)
        ++end;
    if (!has(end))
        return;
    const char between = separator(end);
    if (isNumber(end, 6, 6)) {
        const int value = m_tokens[end].value;
        if (value / 10000 < 24 && value / 100 % 100 < 60 && value % 100 < 60)
            ++end;
        else
            return;
    } else if (isNumber(end, 4, 4) && (between == '_' || between == ' ' || between == '-' || between == 0)) {
        const int value = m_tokens[end].value;
        if (isYear(end) || value / 100 > 23 || value % 100 > 59)
            return;
        ++end;
    } else if (isNumber(end, 1, 2) && m_tokens[end].value < 24) {
        if (isWord(end + 1)
            && (m_tokens[end + 1].folded == u"uhr" || (m_tokens[end + 1].folded == u"h" && m_tokens[end + 1].before == 0))) {
            end += 2;
            if (isSixty(end) && m_tokens[end].before == 0)
                ++end;
        } else if (isNumber(end, 2, 2) && isSixty(end + 1) && !(m_tokens[end + 1].before & (Blank | Bracket))) {
            end += 2;
            if (isSixty(end) && !(m_tokens[end].before & Bracket))
                ++end;
            if (isWord(end) && m_tokens[end].folded == u"uhr")
                ++end;
        } else {
            return;
        }
    } else {
        return;
    }
    for (int at = index; at < end; ++at)
        m_tokens[at].used = true;
}

void Reader::readDates()
{
    int index = 0;
    while (index < m_tokens.size()) {
        Match match;
        if (m_tokens[index].used || !readMatch(index, &match)) {
            ++index;
            continue;
        }
        for (int at = index; at < match.end; ++at)
            m_tokens[at].used = true;
        add(match);
        if (match.listedNumber > 0) {
            m_result.number = match.listedNumber;
            m_result.numberDigits = 2;
        }
        index = match.end;
        if (match.form == DateForm::FullDate) {
            readTimeOfDay(index);
            while (has(index) && m_tokens[index].used)
                ++index;
        }
    }
    // '24 by itself is a year when nothing better is there.
    if (m_result.dateForm == DateForm::None) {
        for (Token &token : m_tokens) {
            if (!token.used && token.kind == Token::Kind::Number && token.digits == 2 && (token.before & Apostrophe)) {
                token.used = true;
                m_result.dateForm = DateForm::Year;
                m_result.from = m_result.to = {twoDigitYear(token.value), 0, 0};
                break;
            }
        }
    }
}

void Reader::dropWeekdays()
{
    const bool single = m_result.hasDay();
    for (int at = 0; at < m_tokens.size(); ++at) {
        Token &token = m_tokens[at];
        if (token.used || token.kind != Token::Kind::Word || !m_calendar.isWeekday(token.folded))
            continue;
        const bool besideDate = (at > 0 && m_tokens[at - 1].used) || (at + 1 < m_tokens.size() && m_tokens[at + 1].used);
        const bool besideNumber = m_tokens.size() == 2 && m_result.dateForm == DateForm::None && isNumber(1 - at, 1, 2);
        if ((single && besideDate) || besideNumber)
            token.used = true;
    }
}

/** Folder names that cameras and copying programs make: 100CANON, DSC00012, long hexadecimal ids. */
bool Reader::readCameraNames()
{
    // Three digits from 100 on and five capital letters, digits or underscores.
    // Source: the folder names of JEITA CP-3461, "Design rule for Camera File system".
    if (m_name.size() >= 8 && m_name.at(0) >= u'1' && m_name.at(0) <= u'9' && m_name.at(1).isDigit() && m_name.at(2).isDigit()) {
        bool camera = true;
        int letters = 0;
        for (int at = 3; at < 8 && camera; ++at) {
            const char16_t c = m_name.at(at).unicode();
            const bool capital = c >= u'A' && c <= u'Z';
            letters += capital || c == u'_' ? 1 : 0;
            camera = capital || c == u'_' || (c >= u'0' && c <= u'9');
        }
        const bool ends = m_name.size() == 8 || !m_name.at(8).isLetterOrNumber();
        if (camera && ends && letters > 0) {
            for (Token &token : m_tokens) {
                if (token.position < 8)
                    token.used = true;
            }
            return true;
        }
    }
    if (m_name.size() >= 16) {
        int digits = 0;
        int letters = 0;
        bool hexadecimal = true;
        for (const QChar c : m_name) {
            if (c >= u'0' && c <= u'9')
                ++digits;
            else if ((c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F'))
                ++letters;
            else if (c != u'-' && c != u'_' && c != u'{' && c != u'}')
                hexadecimal = false;
        }
        if (hexadecimal && digits >= 4 && letters >= 3) {
            for (Token &token : m_tokens)
                token.used = true;
            return true;
        }
    }
    // A camera's prefix and running number; IMG_20240615 has a date instead of the number.
    if (isWord(0) && isNumber(1, 3, 9) && (m_words.roles(m_tokens[0].folded) & Words::CounterPrefix)) {
        const char between = separator(1);
        const bool glued = between == 0 || between == '_' || between == '-';
        Single date;
        const bool isDate = m_tokens[1].digits == 8 && readCompact(1, &date);
        if (!isDate && (glued || (between == ' ' && m_tokens[0].folded.size() > 2))) {
            m_tokens[0].used = true;
            m_tokens[1].used = true;
            // A second running number: "IMG_0001-IMG_0200", "DSC00012-00040"
            for (int at = 2; at < m_tokens.size(); ++at) {
                if (isNumber(at, 3, 9) || (isWord(at) && m_tokens[at].folded == m_tokens[0].folded))
                    m_tokens[at].used = true;
            }
            return true;
        }
        if (isDate)
            m_tokens[0].roles = Words::Device;
    }
    return false;
}

void Reader::assignRoles()
{
    const auto run = [this](int index) {
        // Longer phrases first: "Camera Roll" is no camera.
        const int longest = qMin(m_words.longestPhrase(m_tokens[index].folded), Words::MaximumPhraseLength);
        for (int length = longest; length > 1; --length) {
            QString phrase = m_tokens[index].folded;
            int at = index + 1;
            for (; at < index + length && has(at) && !m_tokens[at].used && m_tokens[at].kind != Token::Kind::Emoji; ++at)
                phrase += QLatin1Char(' ')
                    + (m_tokens[at].kind == Token::Kind::Word ? m_tokens[at].folded
                                                              : m_name.mid(m_tokens[at].position, m_tokens[at].length));
            if (at != index + length)
                continue;
            const Words::Roles roles = m_words.roles(phrase);
            if (roles == Words::NoRole)
                continue;
            for (at = index; at < index + length; ++at)
                m_tokens[at].roles = roles;
            return length;
        }
        m_tokens[index].roles |= m_words.roles(m_tokens[index].folded);
        return 1;
    };
    int index = 0;
    while (index < m_tokens.size()) {
        if (!m_tokens[index].used && m_tokens[index].kind == Token::Kind::Word)
            index += run(index);
        else
            ++index;
    }
    // "cr2" and "4k" fall apart into a word and a number.
    for (int at = 0; at + 1 < m_tokens.size(); ++at) {
        Token &left = m_tokens[at];
        Token &right = m_tokens[at + 1];
        if (left.used || right.used || right.before != 0 || left.kind == right.kind || left.kind == Token::Kind::Emoji
            || right.kind == Token::Kind::Emoji)
            continue;
        const Words::Roles roles
            = m_words.roles(QStringView(m_name).mid(left.position, left.length + right.length).toString().toCaseFolded());
        if (roles != Words::NoRole)
            left.roles = right.roles = roles;
    }
    // Behind a device's name, what mixes letters and digits is its model: "Galaxy S21", "Canon EOS 5D".
    bool device = false;
    for (int at = 0; at < m_tokens.size(); ++at) {
        Token &token = m_tokens[at];
        if (token.used)
            continue;
        if (token.roles & Words::Device) {
            device = true;
        } else if (device && token.kind == Token::Kind::Word) {
            const bool mixed = (token.before == 0 && isNumber(at - 1, 1, 5) && !m_tokens[at - 1].used)
                || (isNumber(at + 1, 1, 5) && m_tokens[at + 1].before == 0 && !m_tokens[at + 1].used && token.length <= 3);
            if (mixed || (token.roles & Words::ModelWord))
                token.roles = Words::Device;
        }
    }
}

void Reader::readParts()
{
    for (int at = 0; at < m_tokens.size(); ++at) {
        const Token &token = m_tokens[at];
        const Words::Roles roles = token.roles & (Words::DayWord | Words::PartWord);
        if (token.used || token.kind != Token::Kind::Word || !roles)
            continue;
        int number = -1;
        int first = at;
        int last = at;
        if (isNumber(at + 1, 1, 3) && !m_tokens[at + 1].used && separator(at + 1) != '?') {
            number = m_tokens[at + 1].value;
            last = at + 1;
        } else {
            int before = at - 1;
            if (isWord(before) && m_tokens[before].before == 0 && m_calendar.isOrdinal(m_tokens[before].folded))
                --before;
            const bool ordinal = before < at - 1 || (token.before & Dot);
            if (isNumber(before, 1, 2) && !m_tokens[before].used && before == 0 && (ordinal || m_tokens.size() == 2)) {
                number = m_tokens[before].value;
                first = before;
            }
        }
        // Only what leads the name numbers a part of something; "Musical Teil 2" is a title.
        if (number < 0 || first > 1 || (first == 1 && !(m_tokens[0].used || m_tokens[0].kind == Token::Kind::Number)))
            continue;
        for (int used = first; used <= last; ++used)
            m_tokens[used].used = true;
        m_result.nature = Nature::DayPart;
        m_result.isNumberedDay = roles.testFlag(Words::DayWord);
        m_result.number = number;
        m_result.numberDigits = number > 9 ? 2 : 1;
        return;
    }
}

void Reader::finishTitle(const QList<int> &rest)
{
    const auto isWeak = [this](int at) {
        const Token &token = m_tokens[at];
        if (token.kind == Token::Kind::Number)
            return false;
        return bool(token.roles & (Words::Filler | Words::Connector))
            && !(token.roles & ~(Words::Roles(Words::Filler) | Words::Connector | Words::Technical | Words::ModelWord));
    };
    qsizetype first = 0;
    qsizetype last = rest.size();
    while (first < last && (isWeak(rest[first]) || m_tokens[rest[first]].kind == Token::Kind::Number))
        ++first;
    while (last > first && isWeak(rest[last - 1]))
        --last;
    QString title;
    for (qsizetype at = first; at < last; ++at) {
        const Token &token = m_tokens[rest[at]];
        if (at > first) {
            const Token &previous = m_tokens[rest[at - 1]];
            if (rest[at] == rest[at - 1] + 1) {
                QString between = m_name.mid(previous.position + previous.length, token.position - previous.position - previous.length);
                between.replace(QLatin1Char('_'), QLatin1Char(' '));
                if (between == u".")
                    between = QStringLiteral(" ");
                title += between;
            } else {
                title += QLatin1Char(' ');
            }
        }
        title += QStringView(m_name).mid(token.position, token.length);
    }
    title = title.simplified();
    // The closing bracket stands behind the last word.
    if (last > first && title.count(QLatin1Char('(')) > title.count(QLatin1Char(')'))) {
        const Token &end = m_tokens[rest[last - 1]];
        if (m_name.indexOf(QLatin1Char(')'), end.position + end.length) >= 0)
            title += QLatin1Char(')');
    }
    m_result.title = title;
}

void Reader::readNumbers(const QList<int> &rest)
{
    QList<int> numbers;
    for (const int at : rest) {
        if (m_tokens[at].kind == Token::Kind::Number)
            numbers.append(at);
        else if (!(m_tokens[at].roles & (Words::Filler | Words::Connector)))
            return;
    }
    if (numbers.isEmpty() || numbers.size() > 2)
        return;
    m_result.number = m_tokens[numbers.constFirst()].value;
    m_result.numberDigits = m_tokens[numbers.constFirst()].digits;
    if (numbers.size() == 2 && m_tokens[numbers.constLast()].digits <= 2)
        m_result.secondNumber = m_tokens[numbers.constLast()].value;
    else if (numbers.size() == 2)
        m_result.number = -1;
}

void Reader::finish()
{
    QList<int> rest;
    Words::Roles all;
    bool titled = false;
    bool category = false;
    bool strange = false;
    int strangers = 0;
    const bool calendar = m_result.dateForm != DateForm::None && m_result.dateForm <= DateForm::Period;
    for (int at = 0; at < m_tokens.size(); ++at) {
        const Token &token = m_tokens[at];
        if (token.used)
            continue;
        rest.append(at);
        all |= token.roles;
        if (token.kind == Token::Kind::Number)
            continue;
        if (token.kind == Token::Kind::Emoji) {
            titled = titled || !token.roles;
            continue;
        }
        const Words::Roles roles
            = token.roles & ~(Words::Roles(Words::DayWord) | Words::PartWord | Words::CounterPrefix | Words::ModelWord);
        if (roles & Words::Title) {
            ++strangers;
            continue;
        }
        if (roles == Words::Category) {
            category = true;
            continue;
        }
        if (roles == Words::NoRole || roles == Words::TimeOfDay) {
            // A lone letter is no title: "2024a", "l'été", "Tom's". One ideograph is.
            const bool letter = token.length == 1 && token.folded.at(0).unicode() < 0x2e80;
            if (letter)
                continue;
            if (roles == Words::TimeOfDay)
                strange = true;
            else
                ++strangers;
        }
    }
    const bool device = bool(all & Words::Device);
    if (strangers > 0 && strangers <= 2 && device && !(all & (Words::TimeOfDay | Words::Category))) {
        // "iPhone von Tom", "Tom's iPhone" and "Annas Handy" name an owner.
        const auto ofOwner = [this, &rest]() {
            for (qsizetype at = 0; at < rest.size(); ++at) {
                const Token &token = m_tokens[rest[at]];
                if (!(token.roles & Words::Device))
                    continue;
                if (at + 1 < rest.size() && (m_tokens[rest[at + 1]].roles & Words::Connector)) {
                    static const QList<QString> owning{QStringLiteral("von"), QStringLiteral("vom"), QStringLiteral("of"),
                        QStringLiteral("de"), QStringLiteral("d"), QStringLiteral("di"), QStringLiteral("van"), QStringLiteral("da"),
                        QStringLiteral("od"), QStringLiteral("av"), QStringLiteral("del"), QStringLiteral("della"), QStringLiteral("du")};
                    return owning.contains(m_tokens[rest[at + 1]].folded);
                }
                if (at > 0 && at <= 2) {
                    const Token &before = m_tokens[rest[at - 1]];
                    if (before.folded == u"s" && (before.before & Apostrophe))
                        return true;
                    if (at == 1 && rest.size() == 2 && !before.roles && before.folded.size() > 3
                        && (before.folded.endsWith(QLatin1Char('s')) || (token.before & Apostrophe)))
                        return true;
                }
            }
            return false;
        };
        if (ofOwner())
            strangers = 0;
    }
    titled = titled || strangers > 0;
    if (category && !calendar && !titled) {
        m_result.isCategory = m_result.dateForm == DateForm::None;
        titled = true;
    }
    if (strange && !titled) {
        if (m_result.nature != Nature::DayPart)
            m_result.nature = Nature::DayPart;
        finishTitle(rest);
        return;
    }
    if (titled || strange)
        finishTitle(rest);
    if ((titled || strange) && m_result.title.isEmpty())
        titled = strange = false;

    if (all & Words::Project) {
        if (m_result.title.isEmpty())
            finishTitle(rest);
        m_result.nature = Nature::Project;
        return;
    }
    if (m_result.nature == Nature::DayPart)
        return;
    if (titled || strange) {
        m_result.nature = Nature::Plain;
        if (isNumber(rest.constFirst(), 1, 3) && rest.constFirst() == 0) {
            m_result.number = m_tokens[rest.constFirst()].value;
            m_result.numberDigits = m_tokens[rest.constFirst()].digits;
        }
        return;
    }
    if (all & Words::Source)
        m_result.nature = Nature::Source;
    else if ((all & Words::Technical)
        && !(m_result.dateForm != DateForm::None && (all & Words::Filler) && !(all & ~(Words::Roles(Words::Filler) | Words::Technical))))
        m_result.nature = Nature::Technical;
    else if (m_result.dateForm != DateForm::None && !m_cameraName && !(all & (Words::Device | Words::Import | Words::Technical)))
        m_result.nature = Nature::Plain;
    else
        m_result.nature = Nature::Camera;
    if (m_result.dateForm == DateForm::None && !m_cameraName)
        readNumbers(rest);
}

NyFolderName Reader::read()
{
    m_cameraName = readCameraNames();
    readDates();
    dropWeekdays();
    assignRoles();
    readParts();
    finish();
    return m_result;
}

} // namespace

NyFolderName NyFolderNameParser::parse(const QString &name)
{
    const QString composed = name.normalized(QString::NormalizationForm_C);
    Reader reader(composed, true);
    NyFolderName result = reader.read();
    // Beside a title, a word that may be a month or a season is rather a part of the title: "Mai Tai", "Winter in Rom".
    if (result.hasTitle() && reader.usedLooseWords())
        result = Reader(composed, false).read();
    return result;
}
