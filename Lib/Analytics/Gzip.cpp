#include "Analytics/Gzip_p.h"

#include <zlib.h>

#include <algorithm>

namespace Velkor::Analytics
{

bool Gzip(std::string_view input, int level, QByteArray& output)
{
    z_stream stream{};
    // 15 window bits, plus 16 for the gzip wrapper.
    if (deflateInit2(&stream, std::clamp(level, 0, 9), Z_DEFLATED, 15 + 16, 8,
                     Z_DEFAULT_STRATEGY) != Z_OK)
    {
        return false;
    }
    output.resize(static_cast<int>(deflateBound(&stream, static_cast<uLong>(input.size()))));
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    const int result = deflate(&stream, Z_FINISH);
    const auto written = static_cast<int>(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END)
    {
        return false;
    }
    output.resize(written);
    output.squeeze();  // deflateBound() is about the input's size: give the rest back
    return true;
}

}  // namespace Velkor::Analytics
