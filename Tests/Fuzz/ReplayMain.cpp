// Runs a fuzz target without a fuzzer: each file named on the command line, and each file below
// each directory named, goes once through LLVMFuzzerTestOneInput, in path order. A target that
// finds a fault aborts; the last "input:" line names the file.

#include "FuzzTarget.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

int main(int argc, char** argv)
{
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i)
    {
        const fs::path path(argv[i]);
        if (fs::is_directory(path))
        {
            for (const auto& entry : fs::recursive_directory_iterator(path))
            {
                if (entry.is_regular_file())
                {
                    inputs.push_back(entry.path());
                }
            }
        }
        else if (fs::is_regular_file(path))
        {
            inputs.push_back(path);
        }
        else
        {
            std::cerr << "no such input: " << path.string() << '\n';
            return 2;
        }
    }
    if (inputs.empty())
    {
        std::cerr << "no inputs\n";
        return 2;
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& input : inputs)
    {
        std::cerr << "input: " << input.string() << std::endl;
        std::ifstream file(input, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file),
                                      std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::cout << inputs.size() << " inputs ran\n";
    return 0;
}
