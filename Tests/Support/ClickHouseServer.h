#pragma once

#include "Support/Http.h"

#include <QTemporaryDir>

#include <string>
#include <vector>

namespace KtStoreTest
{

// A ClickHouse server of the test's own: Debian's clickhouse-server with its data in a temporary
// directory, on free ports of 127.0.0.1, no system service. It is killed when it goes away and
// when the test process dies. Users: "default" without a password, and "uploader" with the
// password "secret".
class ClickHouseServer
{
public:
    struct Ports
    {
        int http = 0;
        int tcp = 0;
    };

    // Ports nobody listens on now.
    static Ports FreePorts();
    // The server of the whole program, started on the first call and again after a Kill().
    static ClickHouseServer& Shared();

    // `shards`: the TCP ports of the servers that form the cluster "kt_shards"
    // (Store/schema-sharded.sql), this one among them.
    explicit ClickHouseServer(Ports ports = FreePorts(), std::vector<int> shards = {});
    ~ClickHouseServer() { Kill(); }  // the data goes with the directory: no clean shutdown

    ClickHouseServer(const ClickHouseServer&) = delete;
    ClickHouseServer& operator=(const ClickHouseServer&) = delete;

    // Starts it, on the data of an earlier start if there was one, and waits until it answers;
    // throws std::runtime_error with the reason when it does not.
    void Start();
    // SIGKILL, and waits for the process to end.
    void Kill();

    const Ports& GetPorts() const { return m_ports; }
    std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_ports.http) + "/"; }

    // Runs one statement in `database` and answers what it gives; throws std::runtime_error with
    // the server's message for a reply other than 200.
    std::string Query(const std::string& sql, const std::string& database = "default") const;
    // Creates `database` and runs the statements of `sqlFile` in it (throws as Query()).
    void CreateDatabase(const std::string& database, const std::string& sqlFile) const;

private:
    QTemporaryDir m_directory;
    Ports m_ports;
    int m_pid = -1;
};

struct SqlStatement
{
    std::string name;  // from the line "-- query: <name>" before it, if there is one
    std::string sql;
};

// The statements of a .sql file: split where a line ends with ';', comment lines left out.
// Throws std::runtime_error when the file cannot be read.
std::vector<SqlStatement> SqlStatements(const std::string& sqlFile);

}  // namespace KtStoreTest
