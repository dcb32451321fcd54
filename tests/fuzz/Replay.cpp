// Feeds every file of a fuzz target's corpus to the target, which aborts at what it finds wrong.

#include "tests/fuzz/FuzzTarget.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::vector<char> Content(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

int main()
{
    int inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VX440_CORPUS)) {
        std::printf("%s\n", entry.path().filename().c_str());
        std::fflush(stdout);
        const std::vector<char> input = Content(entry.path());
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
        ++inputs;
    }
    return inputs > 0 ? 0 : 1;
}
