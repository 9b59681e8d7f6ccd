#include "Tracking/Gui/SignalText_p.h"

#include "Tracking/Gui/QtCompat_p.h"

#include <QMetaObject>
#include <QMetaType>

namespace Velkor::KT::Tracking::Gui
{

namespace
{

// Splits "int,QMap<int,QString>" at the commas outside angle brackets and parentheses.
QList<QByteArray> SplitParameters(const QByteArray& list)
{
    QList<QByteArray> parameters;
    if (list.isEmpty())
    {
        return parameters;
    }
    int depth = 0;
    int start = 0;
    for (int i = 0; i < list.size(); ++i)
    {
        const char c = list.at(i);
        if (c == '<' || c == '(')
        {
            ++depth;
        }
        else if (c == '>' || c == ')')
        {
            --depth;
        }
        else if (c == ',' && depth == 0)
        {
            parameters.append(list.mid(start, i - start));
            start = i + 1;
        }
    }
    parameters.append(list.mid(start));
    return parameters;
}

bool Balanced(const QByteArray& text)
{
    int depth = 0;
    for (const char c : text)
    {
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (depth < 0)
        {
            return false;
        }
    }
    return depth == 0;
}

// Qt compares the types of a connection by their meta-type where both are known ("qint32" and
// "int" are the same), else by name.
bool SameType(const QByteArray& parameter, int type, const char* name)
{
    const int id = QtCompat::MetaTypeId(parameter.constData());
    return id != QMetaType::UnknownType ? id == type : parameter == name;
}

}  // namespace

SignalText SignalText::Parse(const std::string& text)
{
    SignalText signal;
    const QByteArray raw = QByteArray::fromStdString(text).trimmed();
    const int open = raw.indexOf('(');
    if (raw.isEmpty() || raw.at(0) != '2')
    {
        signal.malformed = QStringLiteral("lacks the code prefix \"2\"");
    }
    else if (!Balanced(raw))
    {
        signal.malformed = QStringLiteral("has unbalanced parentheses");
    }
    else if (open < 2 || !raw.endsWith(')'))
    {
        signal.malformed = QStringLiteral("has no parameter list");
    }
    if (!signal.malformed.isEmpty())
    {
        return signal;
    }
    signal.signature = QMetaObject::normalizedSignature(raw.constData() + 1);
    const int from = signal.signature.indexOf('(');
    signal.parameters =
        SplitParameters(signal.signature.mid(from + 1, signal.signature.size() - from - 2));
    return signal;
}

const char* SignalTriggerName(SignalTrigger trigger)
{
    switch (trigger)
    {
        case SignalTrigger::Signal:
            return "signal";
        case SignalTrigger::IntSignal:
            return "intSignal";
        case SignalTrigger::StringSignal:
            return "stringSignal";
    }
    return "signal";
}

QString ParameterMismatch(SignalTrigger trigger, const SignalText& signal)
{
    if (trigger == SignalTrigger::Signal || !signal.malformed.isEmpty())
    {
        return {};
    }
    const bool wantsInt = trigger == SignalTrigger::IntSignal;
    const char* const wanted = wantsInt ? "int" : "QString";
    if (!signal.parameters.isEmpty() &&
        SameType(signal.parameters.first(), wantsInt ? QMetaType::Int : QMetaType::QString, wanted))
    {
        return {};
    }
    return QStringLiteral("needs a signal whose first parameter is %1; %2 %3")
        .arg(QLatin1String(wanted), QString::fromLatin1(signal.signature),
             signal.parameters.isEmpty()
                 ? QStringLiteral("has none")
                 : QStringLiteral("starts with %1")
                       .arg(QString::fromLatin1(signal.parameters.first())));
}

}  // namespace Velkor::KT::Tracking::Gui
