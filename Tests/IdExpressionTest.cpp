// Id expressions (`idIsRegExp`) against object names, through the object search over live
// objects. The start object must match an expression whole, a descendant only in part; the
// expressions are QRegExp's default syntax under either Qt major. Each row writes out what
// matches, so the Qt 5 and the Qt 6 build are held to the same answers: syntax that other
// regular expression engines read differently ("{,2}", "(?i)", lookbehind) is in the table.

#include "Support/Table.h"
#include "Tracking/Gui/LiveObjectTree_p.h"
#include "Tracking/Gui/ObjectSearch_p.h"

#include <gtest/gtest.h>

#include <QObject>

#include <string>
#include <vector>

using namespace Velkor::KT::Tracking;

namespace
{

// The start object's name, then its children in order. "" is an object without a name.
const char* const kStart = "root";
const char* const kChildren[] = {
    "okButton1", "okButton", "OKBUTTON", "bookButton", "cancelButton", "Button", "a.b",    "aXb",
    "a+b",       "tab[1]",   "x",        "xx",         "xxx",          "zoo",    "\\path", ""};

using Objects = std::vector<QObject*>;

// The names of `objects`, separated by spaces; an object without a name stands as "<>".
std::string Names(const Objects& objects)
{
    std::string names;
    for (QObject* object : objects)
    {
        const std::string name = object->objectName().toStdString();
        names += (names.empty() ? "" : " ") + (name.empty() ? "<>" : name);
    }
    return names;
}

Objects Find(QObject* start, const char* expression)
{
    const IdPath path{QStringList{QString::fromUtf8(expression)}, true, false};
    return ObjectSearch<LiveObjectTree>::Find(start, path, &QObject::staticMetaObject,
                                              &QObject::staticMetaObject);
}

struct Row
{
    const char* label;
    const char* expression;
    // The names an expression matches as the start of a search, each object alone: the start
    // and every child above, in that order.
    std::string whole;
    // What a search from the start finds: the start if it matches whole, then each child whose
    // name holds a match.
    std::string part;
};

using IdExpressionTest = KtTest::Table<Row>;

TEST_P(IdExpressionTest, MatchesTheStartWholeAndADescendantInPart)
{
    const Row& row = GetParam();
    std::vector<const char*> names{kStart};
    QObject start;
    start.setObjectName(kStart);
    for (const char* name : kChildren)
    {
        names.push_back(name);
        (new QObject(&start))->setObjectName(name);
    }
    std::string whole;
    for (const char* name : names)
    {
        QObject alone;
        alone.setObjectName(name);
        const std::string found = Names(Find(&alone, row.expression));
        whole += (whole.empty() || found.empty() ? "" : " ") + found;
    }
    EXPECT_EQ(whole, row.whole);
    EXPECT_EQ(Names(Find(&start, row.expression)), row.part);
}

KT_ROWS(IdExpressionTest,
        {
            // Literal text and case.
            {"Literal", "Button", "Button", "okButton1 okButton bookButton cancelButton Button"},
            {"CaseSensitive", "button", "", ""},
            {"UpperCase", "OK", "", "OKBUTTON"},
            // The start "root" holds "oo", but only a whole match counts for it.
            {"StartNeedsAWholeMatch", "oo", "", "bookButton zoo"},
            {"WholeMatchOfTheStart", "^[a-z]+$", "root x xx xxx zoo", "root x xx xxx zoo"},
            {"DotStarWhole", "ok.*1", "okButton1", "okButton1"},
            // Anchors.
            {"Caret", "^ok", "", "okButton1 okButton"},
            {"Dollar", "Button$", "Button", "okButton bookButton cancelButton Button"},
            {"BothAnchors", "^okButton$", "okButton", "okButton"},
            {"EmptyName", "^$", "<>", "<>"},
            {"CaretInTheMiddle", "a^b", "", ""},
            {"WordBoundary", "\\bok", "", "okButton1 okButton"},
            // Character classes.
            {"Digit", "\\d$", "", "okButton1"},
            {"Range", "[0-9]", "", "okButton1 tab[1]"},
            {"RepeatedClass", "[A-Z]{2}", "", "OKBUTTON"},
            {"NotAWordCharacter", "\\W", "", "a.b a+b tab[1] \\path"},
            {"BracketFirstInAClass", "[]]", "", "tab[1]"},
            // Alternation.
            {"Alternation", "ok|cancel", "", "okButton1 okButton bookButton cancelButton"},
            {"AlternativeMatchingWhole", "a|aXb", "aXb", "cancelButton a.b aXb a+b tab[1] \\path"},
            {"EmptyAlternative", "Button|", "Button <>",
             "okButton1 okButton OKBUTTON bookButton cancelButton Button a.b aXb a+b tab[1] x xx "
             "xxx zoo \\path <>"},
            // Escapes.
            {"AnyCharacter", "a.b", "a.b aXb a+b", "a.b aXb a+b"},
            {"EscapedDot", "a\\.b", "a.b", "a.b"},
            {"PlusIsARepeat", "a+b", "", "tab[1]"},
            {"EscapedPlus", "a\\+b", "a+b", "a+b"},
            {"EscapedBrackets", "tab\\[1\\]", "tab[1]", "tab[1]"},
            {"EscapedBackslash", "\\\\path", "\\path", "\\path"},
            // Repeats, back references, lookahead.
            {"OneOrMore", "o+k", "", "okButton1 okButton bookButton"},
            {"Exactly", "x{2}", "xx", "xx xxx"},
            {"AtMostWithoutALowerBound", "^x{,2}$", "x xx <>", "x xx <>"},
            {"BackReference", "(o)\\1", "", "bookButton zoo"},
            {"Lookahead", "ok(?=B)", "", "okButton1 okButton bookButton"},
            {"NegativeLookahead", "Button(?!1)", "Button",
             "okButton bookButton cancelButton Button"},
            // What QRegExp does not read matches nothing.
            {"InlineCaseOption", "(?i)ok", "", ""},
            {"Lookbehind", "(?<=o)k", "", ""},
            {"LeadingStar", "*Button", "", ""},
            {"UnclosedClass", "ok[", "", ""},
        });

}  // namespace
