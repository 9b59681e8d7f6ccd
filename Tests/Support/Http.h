#pragma once

// A blocking HTTP/1.0 client for the store tests: it talks to the test's own servers on
// 127.0.0.1, from any thread, without an event loop.

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace KtStoreTest
{

using Headers = std::vector<std::pair<std::string, std::string>>;

struct HttpReply
{
    int status = 0;                              // 0: no reply (connection refused or closed)
    std::map<std::string, std::string> headers;  // names in lower case
    std::string body;
};

// POSTs `body` to http://127.0.0.1:<port><target> and reads the whole reply.
HttpReply HttpPost(int port, const std::string& target, const std::string& body,
                   const Headers& headers = {});

// `text` in lower case (ASCII), as header names are compared.
std::string Lower(std::string text);

// The content of a gzip member (what the uploader posts); empty when it is not one.
std::string Gunzip(const std::string& compressed);

}  // namespace KtStoreTest
