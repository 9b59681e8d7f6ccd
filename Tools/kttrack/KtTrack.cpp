#include "KtTrack.h"

#include "CheckCommand.h"
#include "CoverageCommand.h"
#include "DiffCommand.h"
#include "MatchCommand.h"
#include "ReplayCommand.h"

#include <ostream>

namespace Velkor::KT::KtTrack
{

const char* HelpText()
{
    return R"(Usage: kttrack replay [OPTIONS] EVENTS.jsonl
       kttrack check [--werror] DOC.xml... [+ DOC.xml...]...
       kttrack coverage [--require-all] DOC.xml... SESSION.jsonl
       kttrack diff [--changed-only] --old F1 [A1] --new F2 [A2] SESSION.jsonl
       kttrack match [--werror] DOC.xml TREE.json
       kttrack --help

Tools for writing and testing the tracking documents: the main document (root
ktmstat), filter rules (root filter) and aggregator rules (root aggregator).

replay: runs events through the filter stage, then the aggregator stage, and
prints what they deliver.
  EVENTS.jsonl           one event per line: {"name": "...", "params": {"KEY": "VALUE"}};
                         "params" is optional, its values are strings, blank lines are
                         skipped; - reads standard input
  --filter F|none        filter rules from the file F (default: the shipped
                         FilterConfig.xml); none: the stage passes everything
  --aggregator A|none    aggregator rules from the file A (default: the shipped
                         AggregatorConfig.xml); none: the stage passes everything
  --format jsonl|text    output as JSON Lines (default) or as the debug viewer shows
                         events (name, then one tab-indented KEY=VALUE line per property)
  --expect OUT.jsonl     compare the delivered events with OUT.jsonl instead of
                         printing them; each difference is printed on one line
  --explain              print, for each event, what the stages did to it: each
                         block, param rule and matcher that applied, each action
                         with the value before and after, the repeat memory's
                         verdict, the aggregator's hold or merge, each led by the
                         FILE:LINE of its rule; then what is delivered. Readable
                         text unless --format jsonl (one JSON object per event)
  --line N               with --explain: only the event on line N of EVENTS (all
                         events still run, so held causes and repeats count);
                         may be given more than once
  Documents are read as the application reads them (not validated); use check
  for that.
  Exit status: 0 done, or delivered as expected; 1 delivered events differ from
  --expect; 2 malformed input line ("FILE:LINE: ..."), unreadable document or
  file, bad options.

check: tells each document's kind by its root element, reads it as the
application does and validates it against the schema of its kind (the schemas
are built into kttrack). Errors are printed as FILE:LINE:COLUMN: error: ...
Warnings (FILE: warning: ..., FILE:LINE: for gui entries) point at rules that
cannot work as written:
  - filter: numeric ranges of one param that leave gaps, share a bound value,
    are covered by earlier ranges, or have no bound;
  - aggregator: a name that is both a main event and an affecting event;
  - main: gui entries that cannot work as written (FILE:LINE: warning: ...): a
    signal text without the code prefix "2" or with unbalanced parentheses, an
    intSignal on a signal whose first parameter is not an int, a stringSignal
    on one whose first is not a QString, a signal trigger outside an object
    entry, propertyValue without propertyName, an invalid regular expression,
    an id with an empty segment, an entry that repeats an earlier one;
  - a set with a main document: filter blocks for events nothing emits (blocks
    apply in document order, so renames count only for later blocks), and
    aggregator main or affecting events that neither the main document nor the
    filter's renames produce.
  Without '+', all documents form one set; separate the sets with '+' to check
  several main documents, each with its own rules, in one run:
    kttrack check Config.xml FilterConfig.xml AggregatorConfig.xml \
                + ConfigGACA.xml FilterConfigGACA.xml AggregatorConfig.xml
  --werror               warnings make the exit status 1
  Exit status: 0 no errors (warnings allowed without --werror); 1 warnings with
  --werror; 2 errors: a missing or unreadable file, a document the application
  cannot read, or one that is not valid against its schema, or bad options.

coverage: replays a recorded session (events as replay reads them, such as the
raw session a RecordingKtTracker at the head of the chain writes) through the
given filter and/or aggregator documents (told apart by their root; a stage
without one runs the shipped document, which is not reported) and prints how
often each filter block, param rule and matcher and each aggregator main and
affecting event fired (FILE:LINE: COUNT ELEMENT), then those that never fired
(a block that never fired stands for its rules), then the session's event
names that no filter block and no aggregator entry names.
  --require-all          exit status 1 unless every element fired, for a CI
                         that wants full coverage
  Exit status: 0 done (or, with --require-all, everything fired); 1 something
  never fired, with --require-all; 2 unreadable document or session, bad
  options.

diff: replays a recorded session through two versions of the rules and prints
what each delivers side by side, one row per session event that either
delivers ("SESSION:LINE  OLD  M  NEW"; M is ' ' for the same event, '|' for
a changed one followed by its changed properties, '<' only old, '>' only new),
then a summary: events gained, lost, renamed, properties changed by key.
Documents are told apart by their root; a kind missing from --old is the
shipped document, a kind missing from --new is the old one.
  --changed-only         leave out the rows that are the same
  Exit status: 0 both deliver the same; 1 they differ; 2 unreadable document or
  session, bad options.

match: matches the gui section of the main document DOC.xml against an object
tree dumped from the running application (the demo host's --dump-tree, or the
library's DumpTopLevelWidgets()), with the library's own search, as attaching
all of the tree's top-level windows would; a tree dumped after the application
attached its windows is matched as they were attached (a window attached by
itself after start-up had no pass over its actions). Prints per entry
(DOC.xml:LINE:) the objects it hooks and with which triggers, or that it
matches nothing, how an action's condition stands on each object, the problems
found (FILE:LINE: warning: ...), among them objects hooked twice and along
which ways, and notes (FILE:LINE: note: ...): for an entry that matches
nothing, objects of nearly its name, of its name where it does not look, or
that no object has its name.
  --werror               problems make the exit status 1 too
  Exit status: 0 every entry matches (and, with --werror, no problems); 1 some
  entry matches nothing, or problems with --werror; 2 an unreadable document or
  tree, or bad arguments.
)";
}

int RunKtTrack(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err)
{
    if (args.empty())
    {
        err << HelpText();
        return 2;
    }
    const std::string& command = args.front();
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command == "--help" || command == "-h" || command == "help")
    {
        out << HelpText();
        return 0;
    }
    if (command == "replay")
    {
        return RunReplay(rest, in, out, err);
    }
    if (command == "check")
    {
        return RunCheck(rest, out, err);
    }
    if (command == "coverage")
    {
        return RunCoverage(rest, in, out, err);
    }
    if (command == "diff")
    {
        return RunDiff(rest, in, out, err);
    }
    if (command == "match")
    {
        return RunMatch(rest, out, err);
    }
    err << "kttrack: unknown command '" << command << "' (see kttrack --help)\n";
    return 2;
}

}  // namespace Velkor::KT::KtTrack
