// SPDX-License-Identifier: Apache-2.0
// Hands every file of the folders given to a fuzz target, so that it runs without libFuzzer.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char* argv[])
{
    int replayed = 0;
    for (int i = 1; i < argc; ++i)
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i]))
        {
            if (!entry.is_regular_file()) continue;
            std::cout << entry.path().filename().string() << std::endl;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> octets{std::istreambuf_iterator<char>(file), {}};
            // A copy of just this size, with nothing after it, lets a sanitizer see the end.
            const std::vector<std::uint8_t> input(octets.begin(), octets.end());
            LLVMFuzzerTestOneInput(input.data(), input.size());
            ++replayed;
        }
    }
    std::cout << replayed << " inputs replayed\n";
    return replayed > 0 ? 0 : 1;
}
