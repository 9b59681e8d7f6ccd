#pragma once

#include <string>

namespace Velkor::Analytics
{

// Appends 128 random bits in the text form of a UUID: 32 lower-case hexadecimal digits in groups
// of 8-4-4-4-12 (all bits random, no version digit). Each thread draws from a generator of its
// own (xoshiro256**) seeded by the operating system; a forked child seeds afresh, so parent and
// child never repeat each other's ids.
void AppendRandomId(std::string& out);

}  // namespace Velkor::Analytics
