#include "MatchCommand.h"

#include "Report.h"
#include "RuleDocument.h"
#include "Schemas.h"

#include "Tracking/Gui/ObjectTree.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonParseError>

#include <ostream>

namespace Velkor::KT::KtTrack
{

int RunMatch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    bool werror = false;
    std::vector<std::string> paths;
    for (const std::string& arg : args)
    {
        if (arg == "--werror")
        {
            werror = true;
        }
        else
        {
            paths.push_back(arg);
        }
    }
    if (paths.size() != 2)
    {
        err << "match: expected [--werror] DOC.xml TREE.json (see kttrack --help)\n";
        return 2;
    }
    const std::string& documentPath = paths[0];
    const std::string& treePath = paths[1];

    Report report(err);
    Schemas schemas;
    const std::unique_ptr<RuleDocument> document = ReadRuleDocument(documentPath, schemas, report);
    if (!document)
    {
        return 2;
    }
    if (document->kind != DocumentKind::Main)
    {
        report.Error(documentPath, std::string("a ") + KindName(document->kind) +
                                       " document has no gui section (expected root 'ktmstat')");
        return 2;
    }

    QFile file(QString::fromStdString(treePath));
    if (!file.open(QIODevice::ReadOnly))
    {
        report.Error(treePath, "cannot read: " + file.errorString().toStdString());
        return 2;
    }
    QJsonParseError parseError;
    const QJsonDocument tree = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError)
    {
        report.Error(treePath, "offset " + std::to_string(parseError.offset) + ": " +
                                   parseError.errorString().toStdString());
        return 2;
    }
    QString treeError;
    const Tracking::AttachReport matched = Tracking::MatchObjectTree(
        tree, document->main->gui() ? *document->main->gui() : Tracking::Config::Gui(),
        document->guiLines, &treeError);
    if (!treeError.isEmpty())
    {
        report.Error(treePath, treeError.toStdString());
        return 2;
    }
    out << matched.ToText(QString::fromStdString(documentPath)).toStdString();
    return matched.UnmatchedCount() > 0 || (werror && matched.HasProblems()) ? 1 : 0;
}

}  // namespace Velkor::KT::KtTrack
