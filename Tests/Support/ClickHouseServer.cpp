#include "Support/ClickHouseServer.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>

#include <chrono>
#include <fstream>
#include <random>
#include <set>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace KtStoreTest
{

ClickHouseServer::Ports ClickHouseServer::FreePorts()
{
    // Below the kernel's range for ephemeral ports (32768 and up), so that no bind to port 0 of
    // another test takes one before the server does; chosen at random among the free ones, and
    // never twice in one process.
    static std::mt19937 random(std::random_device{}());
    static std::set<int> handedOut;
    const auto freePort = []
    {
        for (;;)
        {
            const int port = std::uniform_int_distribution<int>(20000, 32000)(random);
            QTcpServer probe;
            if (handedOut.insert(port).second &&
                probe.listen(QHostAddress::LocalHost, static_cast<quint16>(port)))
            {
                return port;
            }
        }
    };
    const int http = freePort();
    return {http, freePort()};
}

ClickHouseServer& ClickHouseServer::Shared()
{
    static ClickHouseServer server;
    if (server.m_pid <= 0)
    {
        server.Start();
    }
    return server;
}

ClickHouseServer::ClickHouseServer(Ports ports, std::vector<int> shards) : m_ports(ports)
{
    for (const char* file : {"config.xml", "users.xml"})
    {
        QFile::copy(KT_STORE_DIR "/local/" + QString(file), m_directory.filePath(file));
    }
    if (!shards.empty())
    {
        QDir(m_directory.path()).mkdir("conf.d");
        std::ofstream cluster(m_directory.filePath("conf.d/shards.xml").toStdString());
        cluster << "<yandex><remote_servers><kt_shards>\n";
        for (const int port : shards)
        {
            cluster << "<shard><replica><host>127.0.0.1</host><port>" << port
                    << "</port></replica></shard>\n";
        }
        cluster << "</kt_shards></remote_servers></yandex>\n";
    }
}

void ClickHouseServer::Start()
{
    const std::string binary =
        QStandardPaths::findExecutable("clickhouse-server", {"/usr/sbin", "/usr/bin"})
            .toStdString();
    if (binary.empty())
    {
        throw std::runtime_error("clickhouse-server is not installed (./build.sh installs it)");
    }
    const std::string root = m_directory.path().toStdString();
    std::vector<std::string> arguments{binary,
                                       "--config-file=" + root + "/config.xml",
                                       "--",
                                       "--path=" + root + "/data/",
                                       "--tmp_path=" + root + "/data/tmp/",
                                       "--user_files_path=" + root + "/data/user_files/",
                                       "--format_schema_path=" + root + "/data/format_schemas/",
                                       "--http_port=" + std::to_string(m_ports.http),
                                       "--tcp_port=" + std::to_string(m_ports.tcp),
                                       "--logger.log=" + root + "/server.log",
                                       "--logger.errorlog=" + root + "/server.err.log"};
    std::vector<char*> argv;
    for (std::string& argument : arguments)
    {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid == 0)
    {
        // Only async-signal-safe calls until exec: the calling process has threads.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent)
        {
            ::_exit(1);
        }
        const int null = ::open("/dev/null", O_RDWR);
        ::dup2(null, STDIN_FILENO);
        ::dup2(null, STDOUT_FILENO);
        ::dup2(null, STDERR_FILENO);
        ::execv(binary.c_str(), argv.data());
        ::_exit(127);
    }
    if (pid < 0)
    {
        throw std::runtime_error("cannot start clickhouse-server");
    }
    m_pid = pid;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    int ended = 0;
    while ((ended = ::waitpid(pid, nullptr, WNOHANG)) == 0 &&
           std::chrono::steady_clock::now() < deadline)
    {
        if (HttpPost(m_ports.http, "/", "SELECT 1").body == "1\n")
        {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (ended == 0)  // still running, too slow
    {
        Kill();
    }
    m_pid = -1;
    QFile log(m_directory.filePath("server.err.log"));
    log.open(QIODevice::ReadOnly);
    throw std::runtime_error("clickhouse-server does not answer on port " +
                             std::to_string(m_ports.http) + "\n" +
                             log.readAll().right(4000).toStdString());
}

void ClickHouseServer::Kill()
{
    if (m_pid > 0)
    {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
        m_pid = -1;
    }
}

std::string ClickHouseServer::Query(const std::string& sql, const std::string& database) const
{
    const HttpReply reply = HttpPost(m_ports.http, "/?database=" + database, sql);
    if (reply.status != 200)
    {
        throw std::runtime_error("HTTP " + std::to_string(reply.status) + " for " + sql + "\n" +
                                 reply.body);
    }
    return reply.body;
}

void ClickHouseServer::CreateDatabase(const std::string& database, const std::string& sqlFile) const
{
    Query("CREATE DATABASE IF NOT EXISTS " + database);
    for (const SqlStatement& statement : SqlStatements(sqlFile))
    {
        Query(statement.sql, database);
    }
}

std::vector<SqlStatement> SqlStatements(const std::string& sqlFile)
{
    std::ifstream file(sqlFile);
    if (!file.good())
    {
        throw std::runtime_error("cannot read " + sqlFile);
    }
    std::vector<SqlStatement> statements;
    SqlStatement statement;
    std::string line;
    while (std::getline(file, line))
    {
        if (line.rfind("-- query: ", 0) == 0)
        {
            statement.name = line.substr(10);
        }
        if (line.rfind("--", 0) == 0)
        {
            continue;
        }
        statement.sql += line + '\n';
        const std::size_t end = line.find_last_not_of(" \t");
        if (end != std::string::npos && line[end] == ';')
        {
            statement.sql.erase(statement.sql.find_last_of(';'));
            if (statement.sql.find_first_not_of(" \n\t") != std::string::npos)
            {
                statements.push_back(statement);
            }
            statement = {};
        }
    }
    return statements;
}

}  // namespace KtStoreTest
