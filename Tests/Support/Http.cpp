#include "Support/Http.h"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace KtStoreTest
{

namespace
{

bool SendAll(int fd, const std::string& data)
{
    std::size_t done = 0;
    while (done < data.size())
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

}  // namespace

HttpReply HttpPost(int port, const std::string& target, const std::string& body,
                   const Headers& headers)
{
    HttpReply reply;
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd < 0 || ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    {
        if (fd >= 0)
        {
            ::close(fd);
        }
        return reply;
    }
    std::string request = "POST " + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\nContent-Length: " +
                          std::to_string(body.size()) + "\r\n";
    for (const auto& [name, value] : headers)
    {
        request += name + ": " + value + "\r\n";
    }
    request += "\r\n" + body;
    std::string raw;
    if (SendAll(fd, request))
    {
        char buffer[65536];
        ssize_t got = 0;
        while ((got = ::recv(fd, buffer, sizeof buffer, 0)) > 0)
        {
            raw.append(buffer, static_cast<std::size_t>(got));
        }
    }
    ::close(fd);
    const std::size_t headEnd = raw.find("\r\n\r\n");
    if (raw.compare(0, 5, "HTTP/") != 0 || headEnd == std::string::npos)
    {
        return reply;
    }
    reply.status = std::atoi(raw.c_str() + raw.find(' ') + 1);
    std::size_t line = raw.find("\r\n") + 2;
    while (line < headEnd)
    {
        const std::size_t end = raw.find("\r\n", line);
        const std::size_t colon = raw.find(':', line);
        if (colon < end)
        {
            std::string value = raw.substr(colon + 1, end - colon - 1);
            value.erase(0, value.find_first_not_of(' '));
            reply.headers[Lower(raw.substr(line, colon - line))] = value;
        }
        line = end + 2;
    }
    reply.body = raw.substr(headEnd + 4);
    return reply;
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string Gunzip(const std::string& compressed)
{
    z_stream stream{};
    if (inflateInit2(&stream, 15 + 16) != Z_OK)
    {
        return {};
    }
    std::string out;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.data()));
    stream.avail_in = static_cast<uInt>(compressed.size());
    char buffer[65536];
    int result = Z_OK;
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

}  // namespace KtStoreTest
