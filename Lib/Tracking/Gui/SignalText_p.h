#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <string>

namespace Velkor::KT::Tracking::Gui
{

// A signal text of a `signal`, `intSignal` or `stringSignal` trigger, as Qt's string-based
// connect reads it: the code prefix "2", then the signature, which Qt normalises when it is not
// found as written.
struct SignalText
{
    // Empty when the text is well formed; else why Qt's connect refuses it ("lacks the code
    // prefix \"2\"", "has unbalanced parentheses", "has no parameter list").
    QString malformed;
    // The normalised signature without the prefix: "IntervalRemoved(int)".
    QByteArray signature;
    // The normalised parameter types: {"int"}.
    QList<QByteArray> parameters;

    static SignalText Parse(const std::string& text);
};

// The trigger elements that carry a signal text.
enum class SignalTrigger
{
    Signal,
    IntSignal,
    StringSignal,
};

// "signal", "intSignal", "stringSignal".
const char* SignalTriggerName(SignalTrigger trigger);

// Why a well-formed signal cannot feed the trigger's slot (its first parameter must be an int for
// an `intSignal`, a QString for a `stringSignal`), as "needs a signal whose first parameter is
// int; Clicked(QString) starts with QString"; empty when it can.
QString ParameterMismatch(SignalTrigger trigger, const SignalText& signal);

}  // namespace Velkor::KT::Tracking::Gui
