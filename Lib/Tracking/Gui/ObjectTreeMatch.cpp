#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/DumpedObjectTree_p.h"
#include "Tracking/Gui/EntryTable_p.h"
#include "Tracking/Gui/HookLedger_p.h"
#include "Tracking/Gui/ObjectTree.h"
#include "Tracking/Gui/ReportMerge_p.h"
#include "Tracking/Gui/ReportRecorder_p.h"
#include "Tracking/Gui/SectionLints_p.h"
#include "Tracking/Gui/SectionWalk_p.h"

namespace Velkor::KT::Tracking
{

AttachReport MatchObjectTree(const QJsonDocument& tree, const Config::Gui& section,
                             const std::vector<int>& entryLines, QString* errorString)
{
    using Gui::DumpedObjectTree;
    using Recorder = Gui::ReportRecorder<DumpedObjectTree>;
    QString error;
    const std::unique_ptr<Gui::DumpedTree> dumped = Gui::DumpedTree::Read(tree, error);
    if (errorString)
    {
        *errorString = error;
    }
    if (!dumped)
    {
        return AttachReport();
    }
    const Gui::EntryTable table(section, entryLines);
    QVector<AttachReport::Entry> entries = table.Entries();
    Gui::AddSectionProblems(table, entries);
    Gui::HookLedger<DumpedObjectTree::Node> ledger;
    for (const Gui::DumpedNode* root : dumped->Roots())
    {
        Recorder recorder(table, entries, ledger,
                          QLatin1Char('\'') + root->path + QLatin1Char('\''), root, nullptr);
        Gui::SectionWalk<DumpedObjectTree, Recorder>(recorder).Section(root, section);
    }
    for (const Gui::DumpedNode* action : dumped->RootActions())
    {
        Recorder recorder(table, entries, ledger,
                          QStringLiteral("action '") + action->path + QLatin1Char('\''), action,
                          nullptr);
        Gui::SectionWalk<DumpedObjectTree, Recorder>(recorder).Actions(action, section);
    }
    AttachReport report;
    report.SetAttachedTo(
        Gui::AllWindowsName(int(dumped->Roots().size()), int(dumped->RootActions().size())));
    report.SetEntries(entries);
    return report;
}

}  // namespace Velkor::KT::Tracking
