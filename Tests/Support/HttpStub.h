#pragma once

#include "Support/Http.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace KtStoreTest
{

// A small HTTP/1.1 server on a free port of 127.0.0.1 that answers every request as its handler
// says, for the replies a real store does not give on demand, or to stand between the uploader
// and a real store. Every request is kept, its body unzipped. Each connection has a thread.
class HttpStub
{
public:
    struct Request
    {
        std::string method;
        std::string target;
        std::map<std::string, std::string> headers;  // names in lower case
        std::string rawBody;                         // as received
        std::string body;                            // unzipped when Content-Encoding is gzip
        std::chrono::steady_clock::time_point received;
    };

    struct Reply
    {
        Reply(int status = 200, std::string body = {}, Headers headers = {})
            : status(status), body(std::move(body)), headers(std::move(headers))
        {
        }

        int status;
        std::string body;
        Headers headers;
        bool hangUp = false;  // close the connection without a reply
    };

    using Handler = std::function<Reply(const Request&)>;

    explicit HttpStub(Handler handler);
    ~HttpStub();

    int Port() const { return m_port; }
    std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }
    std::vector<Request> Requests() const;

private:
    void Accept();
    void Serve(int fd);

    Handler m_handler;
    int m_listener = -1;
    int m_port = 0;
    std::thread m_acceptor;
    mutable std::mutex m_mutex;
    std::vector<Request> m_requests;
    std::vector<int> m_connections;
    std::vector<std::thread> m_servers;
    bool m_stopping = false;
};

}  // namespace KtStoreTest
