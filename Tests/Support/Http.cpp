#include "Support/Http.h"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace KtStoreTest
{

namespace
{

sockaddr_in Loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool SendAll(int fd, const std::string& data)
{
    for (std::size_t done = 0; done < data.size();)
    {
        const ssize_t sent = ::send(fd, data.data() + done, data.size() - done, MSG_NOSIGNAL);
        if (sent <= 0)
        {
            return false;
        }
        done += static_cast<std::size_t>(sent);
    }
    return true;
}

// Reads from `fd` until `buffer` holds `until` bytes; false when the peer closes first.
bool Fill(int fd, std::string& buffer, std::size_t until)
{
    char chunk[65536];
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
}

// The content of a gzip member (what the uploader posts); empty when it is not one.
std::string Gunzip(const std::string& compressed)
{
    z_stream stream{};
    int result = inflateInit2(&stream, 15 + 16);  // inflateEnd() below is safe after a failure
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.data()));
    stream.avail_in = static_cast<uInt>(compressed.size());
    std::string out;
    char buffer[65536];
    while (result == Z_OK)
    {
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        result = inflate(&stream, Z_NO_FLUSH);
        out.append(buffer, sizeof buffer - stream.avail_out);
    }
    inflateEnd(&stream);
    return result == Z_STREAM_END ? out : std::string();
}

}  // namespace

HttpReply HttpPost(int port, const std::string& target, const std::string& body,
                   const Headers& headers)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(port);
    std::string request = "POST " + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\nContent-Length: " +
                          std::to_string(body.size()) + "\r\n";
    for (const auto& [name, value] : headers)
    {
        request += name + ": " + value + "\r\n";
    }
    std::string raw;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        SendAll(fd, request + "\r\n" + body))
    {
        Fill(fd, raw, std::string::npos);  // HTTP/1.0: the reply ends where the server closes
    }
    ::close(fd);
    const std::size_t headEnd = raw.find("\r\n\r\n");
    if (raw.compare(0, 5, "HTTP/") != 0 || headEnd == std::string::npos)
    {
        return {};
    }
    return {std::atoi(raw.c_str() + raw.find(' ') + 1), raw.substr(headEnd + 4)};
}

HttpStub::HttpStub(Handler handler) : m_handler(std::move(handler))
{
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    if (::bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(m_listener, 16) == 0 &&
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) == 0)
    {
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { Serve(); });
    }
}

HttpStub::~HttpStub()
{
    ::shutdown(m_listener, SHUT_RDWR);  // accept() fails
    if (m_thread.joinable())
    {
        m_thread.join();
    }
    ::close(m_listener);
}

std::vector<HttpStub::Request> HttpStub::Requests() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

void HttpStub::Serve()
{
    int fd;
    while ((fd = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0)
    {
        std::string buffer;
        std::size_t headEnd;
        while ((headEnd = buffer.find("\r\n\r\n")) == std::string::npos &&
               Fill(fd, buffer, buffer.size() + 1))
        {
        }
        Request request;
        request.received = std::chrono::steady_clock::now();
        const std::size_t firstEnd = buffer.find("\r\n");
        const std::size_t space = buffer.find(' ');
        request.target = buffer.substr(space + 1, buffer.rfind(' ', firstEnd) - space - 1);
        for (std::size_t line = firstEnd + 2; line < headEnd && headEnd != std::string::npos;)
        {
            const std::size_t end = buffer.find("\r\n", line);
            const std::size_t colon = buffer.find(':', line);
            if (colon < end)
            {
                std::string name = buffer.substr(line, colon - line);
                std::transform(name.begin(), name.end(), name.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
                std::string value = buffer.substr(colon + 1, end - colon - 1);
                request.headers[name] = value.erase(0, value.find_first_not_of(' '));
            }
            line = end + 2;
        }
        const std::size_t length =
            std::strtoul(request.headers["content-length"].c_str(), nullptr, 10);
        if (headEnd != std::string::npos && Fill(fd, buffer, headEnd + 4 + length))
        {
            request.rawBody = buffer.substr(headEnd + 4, length);
            request.body = request.headers["content-encoding"] == "gzip" ? Gunzip(request.rawBody)
                                                                         : request.rawBody;
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_requests.push_back(request);
            }
            const Reply reply = m_handler(request);
            std::string text =
                "HTTP/1.1 " + std::to_string(reply.status) +
                " -\r\nConnection: close\r\nContent-Length: " + std::to_string(reply.body.size()) +
                "\r\n";
            for (const auto& [name, value] : reply.headers)
            {
                text += name + ": " + value + "\r\n";
            }
            if (!reply.hangUp)
            {
                SendAll(fd, text + "\r\n" + reply.body);
            }
        }
        ::close(fd);
    }
}

}  // namespace KtStoreTest
