#pragma once

#include "Analytics/IApplicationTracker.h"
#include "HostReferenceExport.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Velkor::Analytics
{

// The reference analytics tracker: it keeps every event it is given, in order, as one JSON
// object per line in files of the data directory it is initialised with, in the line format of
// the analytics component's spool (Lib/Analytics, whose file set it uses as well):
//
//   {"id":"...","time":"2026-11-21T11:37:30.123Z","sid":"...","inst":"","app":"...","ver":"",
//    "name":"...","params":{...}}
//
// "id" is 128 random bits made for the line, "time" the UTC time of writing, "sid" the default
// property SID, "app" the identity given to Initialize(), "params" the event's properties plus
// every other default property whose key the event does not have; it knows no installation and
// no version. Texts are escaped as AppendJsonString() describes.
//
// Durability: a line is formatted completely and handed to the kernel with one write(2) on a
// file opened with O_APPEND before Track() answers true, so an event that was acknowledged
// survives a crash or kill of the process (not a crash of the machine: nothing is synced to
// disk). Should the process die inside that write, the torn line is cut off when the next
// tracker opens the file, so every line of the files is a complete JSON object. A restart
// appends to the existing file.
//
// Size cap: the current file is "<base>.jsonl". When a line would take it past maxFileBytes,
// it is renamed to "<base>.1.jsonl" (older ones move up by one) and a new current file begins;
// the file that would become "<base>.<maxFiles>.jsonl" is deleted. So at most maxFiles files
// exist, and each holds at most maxFileBytes, except that a single longer line gets a file of
// its own.
//
// One tracker per data directory: Initialize() takes an exclusive lock ("<base>.lock") and
// fails while another tracker, in this or another process, holds it. All operations may be
// called from any thread; lines appear in the order in which Track() calls were serialised.
class KT_HOST_REFERENCE_EXPORT JsonLinesApplicationTracker : public IApplicationTracker
{
public:
    struct Options
    {
        std::string baseName = "events";
        std::uint64_t maxFileBytes = 4 * 1024 * 1024;
        unsigned maxFiles = 4;  // the current file included; at least 1
    };

    static RefPtr<JsonLinesApplicationTracker> Create();
    static RefPtr<JsonLinesApplicationTracker> Create(const Options& options);

    // Answers false before a successful Initialize() and when the line could not be written
    // completely (nothing of it then stays in the file).
    bool Track(const std::string& name, const Properties& properties) override;
    bool Track(const std::string& name, const std::string& key, const std::string& value) override;
    void AddDefaultProperties(const Properties& properties) override;
    // Creates the directory if needed. Fails when already initialised, when the directory is
    // empty or cannot be created, when another tracker holds it, or when the file cannot be
    // opened.
    bool Initialize(const Properties& defaultProperties, const std::string& identity,
                    const std::string& dataDirectory) override;

    // The path of the file events are appended to now; empty before Initialize().
    std::string CurrentFilePath() const;

protected:
    explicit JsonLinesApplicationTracker(const Options& options);
    ~JsonLinesApplicationTracker() override;

private:
    JsonLinesApplicationTracker(const JsonLinesApplicationTracker&) = delete;
    JsonLinesApplicationTracker& operator=(const JsonLinesApplicationTracker&) = delete;

    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::Analytics
