#include "Support/HttpStub.h"

#include <algorithm>
#include <cctype>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace KtStoreTest
{

namespace
{

const char* Reason(int status)
{
    switch (status)
    {
        case 200:
            return "OK";
        case 400:
            return "Bad Request";
        case 401:
            return "Unauthorized";
        case 413:
            return "Payload Too Large";
        case 429:
            return "Too Many Requests";
        case 503:
            return "Service Unavailable";
        default:
            return "Status";
    }
}

}  // namespace

HttpStub::HttpStub(Handler handler) : m_handler(std::move(handler))
{
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (m_listener >= 0 &&
        ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(m_listener, 16) == 0 &&
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) == 0)
    {
        m_port = ntohs(address.sin_port);
        m_acceptor = std::thread([this] { Accept(); });
    }
}

HttpStub::~HttpStub()
{
    std::vector<std::thread> servers;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
        for (const int fd : m_connections)
        {
            ::shutdown(fd, SHUT_RDWR);
        }
    }
    if (m_listener >= 0)
    {
        ::shutdown(m_listener, SHUT_RDWR);
    }
    if (m_acceptor.joinable())
    {
        m_acceptor.join();
    }
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        servers.swap(m_servers);
    }
    for (auto& server : servers)
    {
        server.join();
    }
    if (m_listener >= 0)
    {
        ::close(m_listener);
    }
}

std::vector<HttpStub::Request> HttpStub::Requests() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

void HttpStub::Accept()
{
    for (;;)
    {
        const int fd = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0)
        {
            return;
        }
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_stopping)
        {
            ::close(fd);
            return;
        }
        m_connections.push_back(fd);
        m_servers.emplace_back([this, fd] { Serve(fd); });
    }
}

void HttpStub::Serve(int fd)
{
    const auto close = [this, fd]
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_connections.erase(std::find(m_connections.begin(), m_connections.end(), fd));
        ::close(fd);
    };
    std::string buffer;
    char chunk[65536];
    const auto fill = [&](std::size_t until)
    {
        while (buffer.size() < until)
        {
            const ssize_t got = ::recv(fd, chunk, sizeof chunk, 0);
            if (got <= 0)
            {
                return false;
            }
            buffer.append(chunk, static_cast<std::size_t>(got));
        }
        return true;
    };
    for (;;)
    {
        std::size_t headEnd;
        while ((headEnd = buffer.find("\r\n\r\n")) == std::string::npos)
        {
            if (!fill(buffer.size() + 1))
            {
                close();
                return;
            }
        }
        Request request;
        request.received = std::chrono::steady_clock::now();
        const std::size_t firstEnd = buffer.find("\r\n");
        const std::string first = buffer.substr(0, firstEnd);
        request.method = first.substr(0, first.find(' '));
        request.target = first.substr(first.find(' ') + 1, first.rfind(' ') - first.find(' ') - 1);
        for (std::size_t line = firstEnd + 2; line < headEnd;)
        {
            const std::size_t end = buffer.find("\r\n", line);
            const std::size_t colon = buffer.find(':', line);
            if (colon < end)
            {
                std::string value = buffer.substr(colon + 1, end - colon - 1);
                value.erase(0, value.find_first_not_of(' '));
                request.headers[Lower(buffer.substr(line, colon - line))] = value;
            }
            line = end + 2;
        }
        const std::size_t length = request.headers.count("content-length")
                                       ? std::stoul(request.headers["content-length"])
                                       : 0;
        if (!fill(headEnd + 4 + length))
        {
            close();
            return;
        }
        request.rawBody = buffer.substr(headEnd + 4, length);
        buffer.erase(0, headEnd + 4 + length);
        request.body = request.headers["content-encoding"] == "gzip" ? Gunzip(request.rawBody)
                                                                     : request.rawBody;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_requests.push_back(request);
        }
        const Reply reply = m_handler(request);
        if (reply.hangUp)
        {
            ::shutdown(fd, SHUT_RDWR);
            close();
            return;
        }
        std::string text = "HTTP/1.1 " + std::to_string(reply.status) + " " + Reason(reply.status) +
                           "\r\nContent-Length: " + std::to_string(reply.body.size()) + "\r\n";
        for (const auto& [name, value] : reply.headers)
        {
            text += name + ": " + value + "\r\n";
        }
        text += "\r\n" + reply.body;
        if (::send(fd, text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size()))
        {
            close();
            return;
        }
    }
}

}  // namespace KtStoreTest
