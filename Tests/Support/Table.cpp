#include "Support/Table.h"

#include <cctype>

namespace KtTest
{

std::string RowName(const std::string& label)
{
    std::string name = label;
    for (char& c : name)
    {
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_')
        {
            c = '_';
        }
    }
    return name.empty() ? std::string("_") : name;
}

}  // namespace KtTest
