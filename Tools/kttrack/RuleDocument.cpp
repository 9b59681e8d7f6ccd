#include "RuleDocument.h"

#include "Report.h"
#include "Schemas.h"
#include "ToolError.h"

#include <QFile>
#include <QXmlStreamReader>

#include <optional>
#include <sstream>
#include <vector>

namespace Velkor::KT::KtTrack
{

namespace Config = Tracking::Config;

namespace
{

struct Position
{
    unsigned long line = 0;
    unsigned long column = 0;
};

std::string Where(const std::string& path, const Position& position)
{
    if (position.line == 0)
    {
        return path;
    }
    return path + ":" + std::to_string(position.line) + ":" + std::to_string(position.column);
}

struct Root
{
    DocumentKind kind;
    Position position;
};

// Tells the kind of the document by its root element.
std::optional<Root> DetectKind(const std::string& path, const std::string& text, Report& report)
{
    QXmlStreamReader reader(QByteArray::fromRawData(text.data(), static_cast<int>(text.size())));
    while (!reader.atEnd())
    {
        if (reader.readNext() != QXmlStreamReader::StartElement)
        {
            continue;
        }
        const Position position{static_cast<unsigned long>(reader.lineNumber()),
                                static_cast<unsigned long>(reader.columnNumber())};
        const std::string name = reader.name().toString().toStdString();
        if (!reader.namespaceUri().isEmpty())
        {
            report.Error(Where(path, position), "root element '" + name +
                                                    "' is in the namespace '" +
                                                    reader.namespaceUri().toString().toStdString() +
                                                    "'; documents use no namespace");
            return std::nullopt;
        }
        for (const DocumentKind kind :
             {DocumentKind::Main, DocumentKind::Filter, DocumentKind::Aggregator})
        {
            if (name == RootElementName(kind))
            {
                return Root{kind, position};
            }
        }
        report.Error(Where(path, position), "unknown root element '" + name +
                                                "' (expected 'ktmstat', 'filter' or 'aggregator')");
        return std::nullopt;
    }
    const Position position{static_cast<unsigned long>(reader.lineNumber()),
                            static_cast<unsigned long>(reader.columnNumber())};
    report.Error(Where(path, position),
                 reader.hasError() ? reader.errorString().toStdString() : "no root element");
    return std::nullopt;
}

std::string Describe(const ::xml_schema::exception& error)
{
    std::ostringstream out;
    out << error;
    return out.str();
}

struct Diagnostic
{
    Position position;
    bool error;
    std::string message;
};

std::vector<Diagnostic> Diagnostics(const ::xml_schema::parsing& parsing)
{
    std::vector<Diagnostic> result;
    for (const auto& d : parsing.diagnostics())
    {
        result.push_back(
            {{static_cast<unsigned long>(d.line()), static_cast<unsigned long>(d.column())},
             d.severity() == ::xml_schema::severity::error,
             d.message()});
    }
    return result;
}

// Runs the root function of `kind` on `text`; the model goes into `document` when given.
void Parse(DocumentKind kind, const std::string& text, ::xml_schema::flags flags,
           const ::xml_schema::properties& properties, RuleDocument* document)
{
    std::istringstream input(text);
    switch (kind)
    {
        case DocumentKind::Main:
        {
            Config::GuiLines guiLines;
            auto model = Config::ktmstat(input, guiLines, flags, properties);
            if (document)
            {
                document->main = std::move(model);
                document->guiLines = std::move(guiLines);
            }
            return;
        }
        case DocumentKind::Filter:
        {
            auto model = Config::Filter::filter(input, flags, properties);
            if (document)
            {
                document->filter = std::move(model);
            }
            return;
        }
        case DocumentKind::Aggregator:
        {
            auto model = Config::Aggregator::aggregator(input, flags, properties);
            if (document)
            {
                document->aggregator = std::move(model);
            }
            return;
        }
    }
}

// Xerces reports a child that the content model does not allow at the end of its parent. Moves
// such a report to the child itself: the second child of that name when there are several (the
// repeated one), else the only one. Other reports stay where they are.
Position ChildPosition(const std::string& text, const Diagnostic& diagnostic)
{
    static const std::string prefix = "element '";
    static const std::string suffix = "' is not allowed for content model";
    const std::size_t end = diagnostic.message.find(suffix);
    if (diagnostic.message.rfind(prefix, 0) != 0 || end == std::string::npos)
    {
        return diagnostic.position;
    }
    const QString child =
        QString::fromStdString(diagnostic.message.substr(prefix.size(), end - prefix.size()));
    // Per open element: where its children of that name start.
    std::vector<std::vector<Position>> open;
    QXmlStreamReader reader(QByteArray::fromRawData(text.data(), static_cast<int>(text.size())));
    while (!reader.atEnd())
    {
        const QXmlStreamReader::TokenType token = reader.readNext();
        const Position here{static_cast<unsigned long>(reader.lineNumber()),
                            static_cast<unsigned long>(reader.columnNumber() + 1)};
        if (token == QXmlStreamReader::StartElement)
        {
            if (!open.empty() && reader.name() == child)
            {
                open.back().push_back(here);
            }
            open.emplace_back();
        }
        else if (token == QXmlStreamReader::EndElement && !open.empty())
        {
            const std::vector<Position> children = std::move(open.back());
            open.pop_back();
            if (here.line == diagnostic.position.line &&
                here.column == diagnostic.position.column && !children.empty())
            {
                return children.size() > 1 ? children[1] : children[0];
            }
        }
    }
    return diagnostic.position;
}

// The schema's complaints about `text`, or none when it is valid. Other failures are thrown.
std::vector<Diagnostic> Violations(DocumentKind kind, const std::string& text, Schemas& schemas)
{
    ::xml_schema::properties properties;
    properties.no_namespace_schema_location(schemas.Location(SchemaFileName(kind)));
    try
    {
        Parse(kind, text, 0, properties, nullptr);
    }
    catch (const ::xml_schema::parsing& parsing)
    {
        std::vector<Diagnostic> diagnostics = Diagnostics(parsing);
        for (Diagnostic& d : diagnostics)
        {
            d.position = ChildPosition(text, d);
        }
        return diagnostics;
    }
    return {};
}

// Where the schema locates the error the parser described without a position: the first
// violation that names the same item, else the first violation.
Position Locate(DocumentKind kind, const std::string& text, const std::string& item,
                Schemas& schemas)
{
    std::vector<Diagnostic> violations;
    try
    {
        violations = Violations(kind, text, schemas);
    }
    catch (const std::exception&)
    {
        return {};
    }
    for (const auto& v : violations)
    {
        if (!item.empty() && v.message.find("'" + item + "'") != std::string::npos)
        {
            return v.position;
        }
    }
    return violations.empty() ? Position{} : violations.front().position;
}

}  // namespace

const char* RootElementName(DocumentKind kind)
{
    switch (kind)
    {
        case DocumentKind::Main:
            return "ktmstat";
        case DocumentKind::Filter:
            return "filter";
        case DocumentKind::Aggregator:
            return "aggregator";
    }
    return "";
}

const char* SchemaFileName(DocumentKind kind)
{
    switch (kind)
    {
        case DocumentKind::Main:
            return "KtmStat.xsd";
        case DocumentKind::Filter:
            return "Filter.xsd";
        case DocumentKind::Aggregator:
            return "Aggregator.xsd";
    }
    return "";
}

const char* KindName(DocumentKind kind)
{
    switch (kind)
    {
        case DocumentKind::Main:
            return "main";
        case DocumentKind::Filter:
            return "filter";
        case DocumentKind::Aggregator:
            return "aggregator";
    }
    return "";
}

std::unique_ptr<RuleDocument> ReadRuleDocument(const std::string& path, Schemas& schemas,
                                               Report& report)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
    {
        report.Error(path, "cannot read: " + file.errorString().toStdString());
        return nullptr;
    }
    const QByteArray bytes = file.readAll();
    return ParseRuleDocument(path, bytes.toStdString(), schemas, report);
}

std::unique_ptr<RuleDocument> ParseRuleDocument(const std::string& path, const std::string& text,
                                                Schemas& schemas, Report& report)
{
    const std::optional<Root> root = DetectKind(path, text, report);
    if (!root)
    {
        return nullptr;
    }
    auto document = std::make_unique<RuleDocument>();
    document->path = path;
    document->text = text;
    document->kind = root->kind;
    try
    {
        Parse(root->kind, text, ::xml_schema::flags::dont_validate, ::xml_schema::properties(),
              document.get());
        return document;
    }
    catch (const ::xml_schema::parsing& parsing)
    {
        const std::vector<Diagnostic> diagnostics = Diagnostics(parsing);
        for (const auto& d : diagnostics)
        {
            if (d.error)
            {
                report.Error(Where(path, d.position), d.message);
            }
            else
            {
                report.Warning(Where(path, d.position), d.message);
            }
        }
        if (diagnostics.empty())
        {
            report.Error(path, Describe(parsing));
        }
    }
    catch (const ::xml_schema::expected_attribute& e)
    {
        report.Error(Where(path, Locate(root->kind, text, e.name(), schemas)), Describe(e));
    }
    catch (const ::xml_schema::expected_element& e)
    {
        report.Error(Where(path, Locate(root->kind, text, e.name(), schemas)), Describe(e));
    }
    catch (const ::xml_schema::unexpected_element& e)
    {
        report.Error(Where(path, Locate(root->kind, text, e.encountered_name(), schemas)),
                     Describe(e));
    }
    catch (const ::xml_schema::exception& e)
    {
        report.Error(Where(path, Locate(root->kind, text, {}, schemas)), Describe(e));
    }
    catch (const ToolError& e)
    {
        report.Error(path, e.what());
    }
    return nullptr;
}

bool ValidateRuleDocument(const RuleDocument& document, Schemas& schemas, Report& report)
{
    const std::string schema = SchemaFileName(document.kind);
    try
    {
        const std::vector<Diagnostic> violations =
            Violations(document.kind, document.text, schemas);
        bool valid = true;
        for (const auto& v : violations)
        {
            if (v.error)
            {
                report.Error(Where(document.path, v.position), v.message + " (" + schema + ")");
                valid = false;
            }
            else
            {
                report.Warning(Where(document.path, v.position), v.message + " (" + schema + ")");
            }
        }
        return valid;
    }
    catch (const ::xml_schema::exception& e)
    {
        report.Error(document.path, Describe(e) + " (" + schema + ")");
    }
    catch (const ToolError& e)
    {
        report.Error(document.path, e.what());
    }
    return false;
}

}  // namespace Velkor::KT::KtTrack
