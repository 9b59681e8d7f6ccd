#include "RuleLines.h"

#include "RuleText.h"

#include <QXmlStreamReader>

#include <utility>

namespace Velkor::KT::KtTrack
{

namespace F = Tracking::Config::Filter;
namespace A = Tracking::Config::Aggregator;

namespace
{

// What QXmlStreamReader::name() returns: QStringRef under Qt 5, QStringView under Qt 6.
using ElementName = decltype(std::declval<const QXmlStreamReader&>().name());

// The kind whose element `name` is (by `kindName`), or -1.
template <typename Kind>
int KindOf(const char* (*kindName)(Kind), std::size_t kinds, const ElementName& name)
{
    for (std::size_t i = 0; i < kinds; ++i)
    {
        if (name == QLatin1String(kindName(static_cast<Kind>(i))))
        {
            return static_cast<int>(i);
        }
    }
    return -1;
}

// Walks the children of the current element. `read(name, line)` reads a child the reader knows
// (up to its end) and returns true, or returns false for one it does not know; from then on the
// reader ignores the element's children, and so does the walk. `line` is where the child's tag
// begins.
template <typename Read>
void Children(QXmlStreamReader& xml, Read read)
{
    bool reading = true;
    while (true)
    {
        const int line = static_cast<int>(xml.lineNumber());
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement || token == QXmlStreamReader::EndDocument ||
            token == QXmlStreamReader::Invalid)
        {
            return;
        }
        if (token != QXmlStreamReader::StartElement)
        {
            continue;
        }
        reading = reading && xml.namespaceUri().isEmpty() && read(xml.name(), line);
        if (!reading)
        {
            xml.skipCurrentElement();
        }
    }
}

// The lines of a matcher's actions; false for a second setValue, which the reader stops at.
void ReadActions(QXmlStreamReader& xml, FilterLines::Matcher& matcher)
{
    Children(xml,
             [&](const ElementName& name, int line)
             {
                 const int kind = KindOf(&ActionKindName, kActionKinds, name);
                 if (kind < 0 || (kind == 0 && !matcher.actions[0].empty()))
                 {
                     return false;
                 }
                 matcher.actions[kind].push_back(line);
                 xml.skipCurrentElement();
                 return true;
             });
}

bool SameCounts(const FilterLines::Matcher& lines, const F::Updater& model)
{
    const std::size_t counts[kActionKinds] = {model.setValue() ? 1u : 0u, model.addParam().size(),
                                              model.modParam().size(),    model.modEvent().size(),
                                              model.skipEvent().size(),   model.delParam().size()};
    for (std::size_t kind = 0; kind < kActionKinds; ++kind)
    {
        if (lines.actions[kind].size() != counts[kind])
        {
            return false;
        }
    }
    return true;
}

void ReadRules(QXmlStreamReader& xml, FilterLines::Block& block)
{
    Children(xml,
             [&](const ElementName& name, int line)
             {
                 if (name != QLatin1String("param"))
                 {
                     return false;
                 }
                 FilterLines::Rule& rule = block.rules.emplace_back();
                 rule.line = line;
                 Children(xml,
                          [&](const ElementName& name, int line)
                          {
                              const int kind = KindOf(&MatcherKindName, kMatcherKinds, name);
                              if (kind < 0)
                              {
                                  return false;
                              }
                              FilterLines::Matcher& matcher = rule.matchers[kind].emplace_back();
                              matcher.line = line;
                              ReadActions(xml, matcher);
                              return true;
                          });
                 return true;
             });
}

template <typename Matchers>
bool SameCounts(const std::vector<FilterLines::Matcher>& lines, const Matchers& model)
{
    if (lines.size() != model.size())
    {
        return false;
    }
    for (std::size_t i = 0; i < lines.size(); ++i)
    {
        if (!SameCounts(lines[i], model[i]))
        {
            return false;
        }
    }
    return true;
}

bool SameCounts(const FilterLines& lines, const F::Filter& model)
{
    if (lines.blocks.size() != model.event().size())
    {
        return false;
    }
    for (std::size_t b = 0; b < lines.blocks.size(); ++b)
    {
        const auto& rules = model.event()[b].param();
        if (lines.blocks[b].rules.size() != rules.size())
        {
            return false;
        }
        for (std::size_t r = 0; r < rules.size(); ++r)
        {
            const auto& m = lines.blocks[b].rules[r].matchers;
            const F::Param& rule = rules[r];
            if (!SameCounts(m[0], rule.equal()) || !SameCounts(m[1], rule.startsWith()) ||
                !SameCounts(m[2], rule.endsWith()) || !SameCounts(m[3], rule.contains()) ||
                !SameCounts(m[4], rule.inRange()) || !SameCounts(m[5], rule.any()))
            {
                return false;
            }
        }
    }
    return true;
}

// Moves to the root element.
bool Root(QXmlStreamReader& xml)
{
    while (!xml.atEnd())
    {
        if (xml.readNext() == QXmlStreamReader::StartElement)
        {
            return true;
        }
    }
    return false;
}

template <typename T>
const T* At(const std::vector<T>& items, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < items.size() ? &items[index] : nullptr;
}

}  // namespace

int FilterLines::BlockLine(int block) const
{
    const Block* b = At(blocks, block);
    return b ? b->line : 0;
}

int FilterLines::RuleLine(int block, int rule) const
{
    const Block* b = At(blocks, block);
    const Rule* r = b ? At(b->rules, rule) : nullptr;
    return r ? r->line : 0;
}

namespace
{

const FilterLines::Matcher* FindMatcher(const FilterLines& lines,
                                        const Tracking::FilterMatcherRef& ref)
{
    const FilterLines::Block* b = At(lines.blocks, ref.block);
    const FilterLines::Rule* r = b ? At(b->rules, ref.rule) : nullptr;
    return r ? At(r->matchers[static_cast<std::size_t>(ref.kind)], ref.matcher) : nullptr;
}

}  // namespace

int FilterLines::MatcherLine(const Tracking::FilterMatcherRef& matcher) const
{
    const Matcher* m = FindMatcher(*this, matcher);
    return m ? m->line : 0;
}

int FilterLines::ActionLine(const Tracking::FilterMatcherRef& matcher,
                            Tracking::FilterActionKind kind, int action) const
{
    const Matcher* m = FindMatcher(*this, matcher);
    const int* line = m ? At(m->actions[static_cast<std::size_t>(kind)], action) : nullptr;
    return line ? *line : 0;
}

int AggregatorLines::BlockLine(int block) const
{
    const Block* b = At(blocks, block);
    return b ? b->line : 0;
}

int AggregatorLines::AffectingLine(int block, int affecting) const
{
    const Block* b = At(blocks, block);
    const int* line = b ? At(b->affecting, affecting) : nullptr;
    return line ? *line : 0;
}

namespace
{

// Walks the `event` elements of the root of `text`: `read(xml, line)` reads each to its end.
// Returns false when the text cannot be read.
template <typename ReadBlock>
bool ReadBlocks(const std::string& text, ReadBlock read)
{
    QXmlStreamReader xml(QByteArray::fromStdString(text));
    if (!Root(xml))
    {
        return false;
    }
    Children(xml,
             [&](const ElementName& name, int line)
             {
                 if (name != QLatin1String("event"))
                 {
                     return false;
                 }
                 read(xml, line);
                 return true;
             });
    return !xml.hasError();
}

}  // namespace

FilterLines MapFilterLines(const std::string& text, const F::Filter& model)
{
    FilterLines lines;
    const bool read = ReadBlocks(text,
                                 [&](QXmlStreamReader& xml, int line)
                                 {
                                     lines.blocks.push_back({line, {}});
                                     ReadRules(xml, lines.blocks.back());
                                 });
    return read && SameCounts(lines, model) ? lines : FilterLines{};
}

AggregatorLines MapAggregatorLines(const std::string& text, const A::Aggregator& model)
{
    AggregatorLines lines;
    const auto readAffecting = [&](QXmlStreamReader& xml, int line)
    {
        AggregatorLines::Block& block = lines.blocks.emplace_back();
        block.line = line;
        Children(xml,
                 [&](const ElementName& name, int line)
                 {
                     if (name != QLatin1String("affectingEventName"))
                     {
                         return false;
                     }
                     block.affecting.push_back(line);
                     xml.skipCurrentElement();
                     return true;
                 });
    };
    bool same = ReadBlocks(text, readAffecting) && lines.blocks.size() == model.event().size();
    for (std::size_t b = 0; same && b < lines.blocks.size(); ++b)
    {
        same = lines.blocks[b].affecting.size() == model.event()[b].affectingEventName().size();
    }
    return same ? lines : AggregatorLines{};
}

std::string At(const std::string& file, int line)
{
    return line > 0 ? file + ":" + std::to_string(line) : file;
}

}  // namespace Velkor::KT::KtTrack
