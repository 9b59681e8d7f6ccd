#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/AttachedMarker_p.h"
#include "Tracking/Gui/DumpedObjectTree_p.h"
#include "Tracking/Gui/EntryTable_p.h"
#include "Tracking/Gui/HookLedger_p.h"
#include "Tracking/Gui/ObjectTree.h"
#include "Tracking/Gui/ReportLog_p.h"
#include "Tracking/Gui/ReportRecorder_p.h"
#include "Tracking/Gui/SectionLints_p.h"
#include "Tracking/Gui/SectionWalk_p.h"

namespace Velkor::KT::Tracking
{

namespace
{

// Whether a dumped object carries the dynamic property `name`.
bool Has(const Gui::DumpedNode* node, const char* name)
{
    return node->properties.contains(QLatin1String(name));
}

// Whether any object of the trees carries the attached marker: the dump was taken after the
// section was attached.
bool AnyAttached(const std::vector<const Gui::DumpedNode*>& nodes)
{
    for (const Gui::DumpedNode* node : nodes)
    {
        bool found = Has(node, AttachedMarker);
        Gui::DumpedObjectTree::ForEachDescendant(node, [&](const Gui::DumpedNode* child)
                                                 { found = found || Has(child, AttachedMarker); });
        if (found)
        {
            return true;
        }
    }
    return false;
}

}  // namespace

AttachReport MatchObjectTree(const QJsonDocument& tree, const Config::Gui& section,
                             const std::vector<int>& entryLines, QString* errorString)
{
    return MatchObjectTree(tree, section, Config::GuiLines{entryLines, {}}, errorString);
}

AttachReport MatchObjectTree(const QJsonDocument& tree, const Config::Gui& section,
                             const Config::GuiLines& lines, QString* errorString)
{
    using Gui::DumpedObjectTree;
    using Node = DumpedObjectTree::Node;
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
    // A dump taken after the attach tells which windows and actions were attached: windows that
    // were attached by themselves, when they got their native window after start-up, had no
    // pass over their actions. A dump taken before is matched as the attach of all windows.
    const bool attached = AnyAttached(dumped->Roots());
    std::vector<Node> windows;
    for (const Node root : dumped->Roots())
    {
        if (!Has(root, LibraryWindowMarker) && (!attached || Has(root, AttachedMarker)))
        {
            windows.push_back(root);
        }
    }
    std::vector<Node> actions;
    for (const Node action : dumped->RootActions())
    {
        if (!attached || Has(action, AttachedMarker))
        {
            actions.push_back(action);
        }
    }
    const Gui::EntryTable table(section, lines);
    QVector<AttachReport::Entry> entries = table.Entries();
    Gui::AddSectionProblems(table, entries);
    Gui::HookLedger<Node> ledger;
    Gui::ReportRecorder<DumpedObjectTree> recorder(table, entries, ledger);
    for (const Node root : windows)
    {
        recorder.Begin(QLatin1Char('\'') + root->path + QLatin1Char('\''), root, nullptr);
        Gui::SectionWalk<DumpedObjectTree, decltype(recorder)>(recorder).Section(root, section);
    }
    for (const Node action : actions)
    {
        recorder.Begin(QStringLiteral("action '") + action->path + QLatin1Char('\''), action,
                       nullptr);
        Gui::SectionWalk<DumpedObjectTree, decltype(recorder)>(recorder).Actions(action, section);
    }
    std::vector<Node> roots = windows;
    roots.insert(roots.end(), actions.begin(), actions.end());
    recorder.Finish(roots, true);
    AttachReport report;
    report.SetAttachedTo(Gui::AllWindowsName(int(windows.size()), int(actions.size())));
    report.SetEntries(entries);
    return report;
}

}  // namespace Velkor::KT::Tracking
