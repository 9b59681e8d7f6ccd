#pragma once

// HTTP for the store tests on 127.0.0.1: a blocking client that works from any thread without an
// event loop, and a scripted server.

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace KtStoreTest
{

using Headers = std::vector<std::pair<std::string, std::string>>;

struct HttpReply
{
    int status = 0;  // 0: no reply (connection refused or closed)
    std::string body;
};

// POSTs `body` to http://127.0.0.1:<port><target> over HTTP/1.0 and reads the whole reply.
HttpReply HttpPost(int port, const std::string& target, const std::string& body,
                   const Headers& headers = {});

// A small HTTP/1.1 server on a free port of 127.0.0.1 that answers every request as its handler
// says, for the replies a real store does not give on demand, or to stand between the uploader
// and a real store. Every request is kept, its body unzipped. One thread answers one request at
// a time, each on a connection of its own (Connection: close).
class HttpStub
{
public:
    struct Request
    {
        std::string target;
        std::map<std::string, std::string> headers;  // names in lower case
        std::string rawBody;                         // as received
        std::string body;                            // unzipped when Content-Encoding is gzip
        std::chrono::steady_clock::time_point received;
    };

    struct Reply
    {
        Reply(int status = 200, std::string body = {}, Headers headers = {}, bool hangUp = false)
            : status(status), body(std::move(body)), headers(std::move(headers)), hangUp(hangUp)
        {
        }

        int status;
        std::string body;
        Headers headers;
        bool hangUp;  // close the connection without a reply
    };

    using Handler = std::function<Reply(const Request&)>;

    explicit HttpStub(Handler handler);
    ~HttpStub();

    std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }
    std::vector<Request> Requests() const;

private:
    void Serve();

    Handler m_handler;
    int m_listener = -1;
    int m_port = 0;
    std::thread m_thread;
    mutable std::mutex m_mutex;
    std::vector<Request> m_requests;
};

}  // namespace KtStoreTest
