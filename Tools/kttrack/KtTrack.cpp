#include "KtTrack.h"

#include "CheckCommand.h"
#include "MatchCommand.h"
#include "ReplayCommand.h"

#include <ostream>

namespace Velkor::KT::KtTrack
{

const char* HelpText()
{
    return R"(Usage: kttrack replay [OPTIONS] EVENTS.jsonl
       kttrack check [--werror] DOC.xml... [+ DOC.xml...]...
       kttrack match DOC.xml TREE.json
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

match: matches the gui section of the main document DOC.xml against an object
tree dumped from the running application (the demo host's --dump-tree, or the
library's DumpTopLevelWidgets()), with the library's own search, as attaching
all of the tree's top-level windows would. Prints per entry (DOC.xml:LINE:) the
objects it hooks and with which triggers, or that it matches nothing, and the
problems found (FILE:LINE: warning: ...), among them objects hooked twice and
along which ways.
  Exit status: 0 every entry matches; 1 some entry matches nothing; 2 an
  unreadable document or tree, or bad arguments.
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
    if (command == "match")
    {
        return RunMatch(rest, out, err);
    }
    err << "kttrack: unknown command '" << command << "' (see kttrack --help)\n";
    return 2;
}

}  // namespace Velkor::KT::KtTrack
